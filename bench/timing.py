"""What the benchmarks share: the best time of several runs, and
pyoptinterface on the HiGHS library of highsbox."""
import gc
import os
import time


def best_of(repeats, build):
    """Best wall time of `repeats` calls of build(), each after a collection;
    the result is freed outside the clock."""
    best = float("inf")
    for _ in range(repeats):
        gc.collect()
        t = time.perf_counter()
        result = build()
        best = min(best, time.perf_counter() - t)
        del result
    return best


def pyoptinterface_on_highs():
    """pyoptinterface and its HiGHS interface, loaded with the library of the
    highsbox package; (None, None) when either is missing."""
    try:
        import highsbox
        import pyoptinterface as poi
        from pyoptinterface import highs as poi_highs
    except ImportError:  # pragma: no cover
        return None, None
    if not poi_highs.load_library(os.path.join(highsbox.highs_lib_dir(), "libhighs.so")):
        return None, None
    return poi, poi_highs
