// External corpus: the example models shipped with GLPK (MPS and LP files,
// and MPS and LP files that glpsol makes from its MathProg models). Each is
// read and solved here and compared with what glpsol reports for the same
// file; each is written in every format and read back unchanged.
#include <sys/wait.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "file_support.h"
#include "test_support.h"

namespace fs = std::filesystem;

namespace {

const char *const kExamples = "/usr/share/doc/glpk-utils/examples";

// Runs a shell command; returns its exit status and its standard output.
int run(const std::string &command, std::string *output) {
  FILE *p = popen((command + " 2>&1").c_str(), "r");
  if (!p) return -1;
  char buf[4096];
  size_t n;
  while ((n = std::fread(buf, 1, sizeof buf, p)) > 0)
    if (output) output->append(buf, n);
  int status = pclose(p);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

enum class Verdict { Optimal, Infeasible, Unbounded, InfeasibleOrUnbounded, Unknown };

struct Reference {
  Verdict verdict = Verdict::Unknown;
  double objective = 0;
};

// glpsol's verdict on a file, from its log and its solution report.
bool glpsol_reference(const std::string &option, const std::string &file, const TempDir &dir,
                      Reference *ref) {
  std::string out = dir.file("glpsol.out"), log;
  std::remove(out.c_str());
  int rc = run("timeout 2 glpsol " + option + " '" + file + "' -o '" + out + "'", &log);
  if (rc == 124) return false;  // too slow for a unit test
  if (log.find("NO PRIMAL FEASIBLE") != std::string::npos ||
      log.find("NO INTEGER FEASIBLE") != std::string::npos) {
    ref->verdict = Verdict::Infeasible;
  } else if (log.find("UNBOUNDED") != std::string::npos) {
    ref->verdict = Verdict::Unbounded;
  } else if (log.find("NO DUAL FEASIBLE") != std::string::npos) {
    ref->verdict = Verdict::InfeasibleOrUnbounded;
  } else {
    std::string report = read_text(out);
    size_t status = report.find("Status:");
    size_t objective = report.find("Objective:");
    if (status == std::string::npos || objective == std::string::npos) return false;
    std::string line = report.substr(status, report.find('\n', status) - status);
    if (line.find("OPTIMAL") == std::string::npos) return false;
    size_t eq = report.find(" = ", objective);
    if (eq == std::string::npos) return false;
    ref->objective = std::strtod(report.c_str() + eq + 3, nullptr);
    ref->verdict = Verdict::Optimal;
  }
  return true;
}

struct Outcome {
  int solvestatus = -1, solstatus = -1;
  double objective = 0;
  double seconds = 0;
};

Outcome solve(ZRVSprob prob) {
  Outcome o;
  // glpsol works to 1e-7; the engine's looser defaults (1e-6) move the
  // optimum of degenerate models such as dea by a few parts in 1e5.
  EXPECT_EQ(ZRVSsetdblcontrol(prob, ZRVS_FEASTOL, 1e-9), 0);
  EXPECT_EQ(ZRVSsetdblcontrol(prob, ZRVS_OPTIMALITYTOL, 1e-9), 0);
  EXPECT_EQ(ZRVSsetdblcontrol(prob, ZRVS_TIMELIMIT, 30.0), 0);
  EXPECT_EQ(ZRVSoptimize(prob, "", &o.solvestatus, &o.solstatus), 0);
  int mipents = 0, sets = 0;
  EXPECT_EQ(ZRVSgetintattrib(prob, ZRVS_MIPENTS, &mipents), 0);
  EXPECT_EQ(ZRVSgetintattrib(prob, ZRVS_SETS, &sets), 0);
  EXPECT_EQ(ZRVSgetdblattrib(prob, mipents + sets > 0 ? ZRVS_MIPOBJVAL : ZRVS_LPOBJVAL,
                             &o.objective),
            0);
  EXPECT_EQ(ZRVSgetdblattrib(prob, ZRVS_SOLVETIME, &o.seconds), 0);
  return o;
}

bool agrees(const Reference &ref, const Outcome &o, std::string *why) {
  char buf[256];
  switch (ref.verdict) {
    case Verdict::Optimal: {
      double diff = std::fabs(o.objective - ref.objective) / std::max(1.0, std::fabs(ref.objective));
      std::snprintf(buf, sizeof buf, "glpsol optimum %.10g, here %.10g (solstatus %d)",
                    ref.objective, o.objective, o.solstatus);
      *why = buf;
      return o.solstatus == ZRVS_SOLSTATUS_OPTIMAL && diff <= 1e-6;
    }
    case Verdict::Infeasible:
      *why = "glpsol: infeasible; here solstatus " + std::to_string(o.solstatus);
      return o.solstatus == ZRVS_SOLSTATUS_INFEASIBLE;
    case Verdict::Unbounded:
      *why = "glpsol: unbounded; here solstatus " + std::to_string(o.solstatus);
      return o.solstatus == ZRVS_SOLSTATUS_UNBOUNDED;
    case Verdict::InfeasibleOrUnbounded:
      *why = "glpsol: infeasible or unbounded; here solstatus " + std::to_string(o.solstatus);
      return o.solstatus == ZRVS_SOLSTATUS_UNBOUNDED || o.solstatus == ZRVS_SOLSTATUS_INFEASIBLE;
    case Verdict::Unknown: break;
  }
  return false;
}

bool fixed_mps_names(const ModelSnapshot &s) {
  auto fits = [](const std::vector<std::string> &names) {
    for (const std::string &n : names)
      if (n.empty() || n.size() > 8 || n.front() == ' ' || n.back() == ' ') return false;
    return true;
  };
  return fits(s.rownames) && fits(s.colnames) && fits(s.setnames);
}

// Names an LP file holds as they are (brackets, for one, are not allowed).
bool lp_names(const ModelSnapshot &s) {
  auto fits = [](const std::vector<std::string> &names) {
    for (const std::string &n : names) {
      if (n.empty() || std::isdigit(static_cast<unsigned char>(n[0])) || n[0] == '.') return false;
      for (unsigned char c : n)
        if (!std::isalnum(c) && !std::strchr("!\"#$%&()/,.;?@_`'{}|~", c)) return false;
    }
    return true;
  };
  return fits(s.rownames) && fits(s.colnames) && fits(s.setnames);
}

struct CorpusFile {
  std::string path;
  std::string glpsol_option;  // how glpsol reads it
  std::string flags;          // how the engine reads it
};

class CorpusTest : public ProblemTest {
 protected:
  void SetUp() override {
    ProblemTest::SetUp();
    ASSERT_EQ(ZRVSsetintcontrol(prob, ZRVS_OUTPUTLOG, 0), 0);
    ASSERT_EQ(ZRVScreateprob(&copy), 0);
    ASSERT_EQ(ZRVSsetintcontrol(copy, ZRVS_OUTPUTLOG, 0), 0);
  }
  void TearDown() override {
    EXPECT_EQ(ZRVSdestroyprob(copy), 0);
    ProblemTest::TearDown();
  }
  std::string error_of(ZRVSprob p) {
    char text[ZRVS_MAXMESSAGELENGTH];
    ZRVSgetlasterror(p, text);
    return text;
  }
  // Writes prob with the given name and flags, reads it into copy and
  // compares the two models.
  void round_trip(const ModelSnapshot &original, const std::string &file, const char *flags,
                  bool names, const std::string &what) {
    ASSERT_EQ(ZRVSwriteprob(prob, file.c_str(), flags), 0) << what << ": " << last_error();
    ASSERT_EQ(ZRVSreadprob(copy, file.c_str(), flags), 0) << what << ": " << error_of(copy);
    expect_same_model(original, snapshot(copy), names, what);
  }
  ZRVSprob copy = nullptr;
};

TEST_F(CorpusTest, GlpkExamplesAgreeWithGlpsolAndRoundTrip) {
  std::string version;
  ASSERT_EQ(run("glpsol --version", &version), 0)
      << "glpsol is needed (Debian package glpk-utils, installed by scripts/setup.sh)";
  ASSERT_TRUE(fs::is_directory(kExamples)) << kExamples << " is missing (glpk-utils)";
  TempDir dir;
  ASSERT_TRUE(dir.ok());

  std::vector<CorpusFile> files;
  std::vector<fs::path> entries;
  for (const auto &e : fs::directory_iterator(kExamples)) entries.push_back(e.path());
  std::sort(entries.begin(), entries.end());
  for (const fs::path &p : entries) {
    std::string ext = p.extension().string();
    if (ext == ".mps") files.push_back({p.string(), "--mps", "f"});
    if (ext == ".lp") files.push_back({p.string(), "--lp", ""});
    if (ext != ".mod") continue;
    // MathProg models become free MPS and LP files; models glpsol cannot
    // translate quickly are left out.
    std::string stem = p.stem().string();
    std::string mps = dir.file(stem + ".mps"), lp = dir.file(stem + ".lp");
    if (run("cd '" + p.parent_path().string() + "' && timeout 3 glpsol --check -m '" +
                p.string() + "' --wfreemps '" + mps + "' --wlp '" + lp + "'",
            nullptr) != 0)
      continue;
    files.push_back({mps, "--freemps", ""});
    files.push_back({lp, "--lp", ""});
  }

  int compared = 0, agreed = 0, skipped = 0, round_trips = 0;
  for (const CorpusFile &f : files) {
    SCOPED_TRACE(f.path);
    Reference ref;
    if (!glpsol_reference(f.glpsol_option, f.path, dir, &ref)) {
      ++skipped;
      continue;
    }
    ASSERT_EQ(ZRVSreadprob(prob, f.path.c_str(), f.flags.c_str()), 0) << last_error();
    ModelSnapshot original = snapshot(prob);
    Outcome first = solve(prob);
    std::string why;
    ++compared;
    bool ok = agrees(ref, first, &why);
    agreed += ok;
    EXPECT_TRUE(ok) << why;

    // Write and read back in every format: the same model.
    std::string stem = fs::path(f.path).stem().string();
    round_trip(original, dir.file("rt-" + stem + ".mps"), "", true, "free MPS");
    bool lp_ok = lp_names(original);
    round_trip(original, dir.file("rt-" + stem + ".lp"), "", lp_ok, "LP");
    round_trip(original, dir.file("rt-" + stem + ".fixed"), "f", fixed_mps_names(original),
               "fixed MPS");
    round_trip(original, dir.file("rt-" + stem + ".mps.gz"), "", true, "compressed MPS");
    ++round_trips;
    // The model read back (last from the compressed MPS file) solves to the
    // same optimum;
    // checked where solving is quick.
    if (first.seconds > 0.3) continue;
    Outcome again = solve(copy);
    EXPECT_EQ(again.solstatus, first.solstatus);
    if (first.solstatus == ZRVS_SOLSTATUS_OPTIMAL) {
      EXPECT_LE(std::fabs(again.objective - first.objective),
                1e-6 * std::max(1.0, std::fabs(first.objective)));
    }
  }
  std::cout << "[ corpus   ] " << files.size() << " files, " << compared
            << " compared with glpsol, " << agreed << " agree, " << skipped
            << " skipped (glpsol slower than 2 s), " << round_trips << " round-tripped\n";
  // The shipped examples give well over forty comparable files.
  EXPECT_GE(compared, 40);
}

// glpsol reads the files this engine writes and finds the same optimum: the
// written files are ordinary MPS and LP, not only readable here.
TEST_F(CorpusTest, GlpsolReadsWrittenFiles) {
  ASSERT_EQ(run("glpsol --version", nullptr), 0) << "glpsol is needed (glpk-utils)";
  TempDir dir;
  ASSERT_TRUE(dir.ok());
  for (const char *name : {"plan.lp", "samp1.mps", "murtagh.mps"}) {
    SCOPED_TRACE(name);
    std::string source = std::string(kExamples) + "/" + name;
    const char *flags = std::string(name).find(".mps") != std::string::npos ? "f" : "";
    ASSERT_EQ(ZRVSreadprob(prob, source.c_str(), flags), 0) << last_error();
    Outcome here = solve(prob);
    for (const char *ext : {".mps", ".lp"}) {
      std::string file = dir.file(std::string("out") + ext);
      ASSERT_EQ(ZRVSwriteprob(prob, file.c_str(), ""), 0) << last_error();
      Reference ref;
      ASSERT_TRUE(glpsol_reference(ext == std::string(".mps") ? "--freemps" : "--lp", file, dir, &ref));
      std::string why;
      EXPECT_TRUE(agrees(ref, here, &why)) << ext << ": " << why;
    }
  }
}

}  // namespace
