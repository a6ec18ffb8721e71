// Random corruptions of valid MPS and LP files: every read either succeeds
// or fails with a located error, never crashes or hangs, and a failed read
// leaves the problem as it was. ZORVAN_FUZZ_ROUNDS and ZORVAN_FUZZ_SEED
// (environment) make longer runs; tools/fuzz_readers.sh runs one.
#include <cstdlib>
#include <random>
#include <string>

#include "file_support.h"
#include "model_support.h"

namespace {

long env_number(const char *name, long fallback) {
  const char *v = std::getenv(name);
  return v && *v ? std::strtol(v, nullptr, 10) : fallback;
}

// One random change: flip, insert or delete bytes, duplicate, drop or swap
// lines, cut the text, or put in a token that readers treat specially.
std::string corrupt(std::string text, std::mt19937_64 &rng) {
  static const char *const tokens[] = {
      " ", "\n", ":", "::", "[", "]", "^", "*", "/", "<=", ">=", "=", "->", "-", "+", "1e999",
      "-inf", "nan", "'MARKER'", "'INTORG'", "RHS", "BOUNDS", "ENDATA", "End", "Subject To",
      "S1::", "$", "\\", "\0", "999999999999999999999", ".", "e", "x0", "lim", "SC", "BV"};
  int changes = 1 + static_cast<int>(rng() % 4);
  for (int c = 0; c < changes && !text.empty(); ++c) {
    size_t at = rng() % text.size();
    switch (rng() % 7) {
      case 0: text[at] = static_cast<char>(rng() % 256); break;
      case 1: text.erase(at, 1 + rng() % 8); break;
      case 2: {
        const char *t = tokens[rng() % (sizeof tokens / sizeof *tokens)];
        text.insert(at, t[0] ? std::string(t) : std::string(1, '\0'));
        break;
      }
      case 3: {  // duplicate a line
        size_t b = text.rfind('\n', at), e = text.find('\n', at);
        b = b == std::string::npos ? 0 : b + 1;
        if (e == std::string::npos) e = text.size();
        text.insert(b, text.substr(b, e - b) + "\n");
        break;
      }
      case 4: {  // drop a line
        size_t b = text.rfind('\n', at), e = text.find('\n', at);
        b = b == std::string::npos ? 0 : b + 1;
        if (e != std::string::npos) text.erase(b, e - b + 1);
        break;
      }
      case 5: text.resize(at); break;
      case 6: {  // swap two bytes far apart
        size_t other = rng() % text.size();
        std::swap(text[at], text[other]);
        break;
      }
    }
  }
  return text;
}

class FuzzTest : public ModelTest {};

TEST_F(FuzzTest, CorruptedFilesReadOrFailCleanly) {
  TempDir dir;
  ASSERT_TRUE(dir.ok());
  long rounds = env_number("ZORVAN_FUZZ_ROUNDS", 400);
  std::mt19937_64 rng(static_cast<uint64_t>(env_number("ZORVAN_FUZZ_SEED", 20240607)));
  build_feature_model(prob);
  struct Source {
    std::string name, flags, text;
    ModelSnapshot valid;  // the model of the uncorrupted file
  } sources[] = {{"f.mps", "", "", {}}, {"f.fixed", "f", "", {}}, {"f.lp", "", "", {}}};
  ZRVSprob target = nullptr;
  ASSERT_EQ(ZRVScreateprob(&target), 0);
  ASSERT_EQ(ZRVSsetintcontrol(target, ZRVS_OUTPUTLOG, 0), 0);
  for (Source &s : sources) {
    ASSERT_EQ(ZRVSwriteprob(prob, dir.file(s.name).c_str(), s.flags.c_str()), 0) << last_error();
    s.text = read_text(dir.file(s.name));
    ASSERT_FALSE(s.text.empty());
    ASSERT_EQ(ZRVSreadprob(target, dir.file(s.name).c_str(), s.flags.c_str()), 0);
    s.valid = snapshot(target);
  }
  long read = 0, refused = 0;
  for (long round = 0; round < rounds; ++round) {
    const Source &s = sources[round % 3];
    std::string text = corrupt(s.text, rng);
    std::string file = dir.file("fuzz-" + s.name);
    write_text(file, text);
    // The target holds the valid model; a failed read must leave it so.
    ASSERT_EQ(ZRVSreadprob(target, dir.file(s.name).c_str(), s.flags.c_str()), 0);
    int status = ZRVSreadprob(target, file.c_str(), s.flags.c_str());
    if (status == 0) {
      ++read;
      // Whatever was read can be written and read again.
      std::string again = dir.file("again-" + s.name);
      if (ZRVSwriteprob(target, again.c_str(), s.flags.c_str()) == 0) {
        EXPECT_EQ(ZRVSreadprob(target, again.c_str(), s.flags.c_str()), 0)
            << "round " << round << "\n" << read_text(again);
      }
      continue;
    }
    ++refused;
    char error[ZRVS_MAXMESSAGELENGTH];
    ASSERT_EQ(ZRVSgetlasterror(target, error), 0);
    EXPECT_NE(std::string(error).find("file '"), std::string::npos) << error;
    if (round % 25 == 0) {
      SCOPED_TRACE("round " + std::to_string(round));
      expect_same_model(s.valid, snapshot(target), true, error);
    }
  }
  EXPECT_EQ(ZRVSdestroyprob(target), 0);
  // Both outcomes happen: the corruptions are neither all fatal nor all harmless.
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
  std::cout << "[ fuzz     ] " << rounds << " corrupted files: " << read << " read, " << refused
            << " refused\n";
}

}  // namespace
