#include "torture/Report.h"

#include <fnmatch.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <new>
#include <stdexcept>

#include "torture/Watch.h"

namespace torture {
namespace {

constexpr char kBetween[] = " | ";

std::vector<std::pair<std::string, std::string>> readExpected(const std::string& path) {
  std::vector<std::pair<std::string, std::string>> patterns;
  std::ifstream file(path);
  if (!path.empty() && !file) {
    throw std::runtime_error("cannot read the list of expected failures, " + path);
  }
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') {
      continue;
    }
    const std::size_t first = line.find(kBetween);
    const std::size_t second = first == std::string::npos ? first : line.find(kBetween, first + 3);
    if (second == std::string::npos) {
      throw std::runtime_error(path + ": not HARNESS/CASE | PROBLEM | REASON: " + line);
    }
    patterns.emplace_back(line.substr(0, first), line.substr(first + 3, second - first - 3));
  }
  return patterns;
}

bool matches(const std::string& pattern, const std::string& text) {
  return fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
}

std::string joined(const Problems& problems) {
  std::string text;
  for (const std::string& problem : problems) {
    text += (text.empty() ? "" : "; ") + problem;
  }
  return text;
}

}  // namespace

Report::Report(std::string harness, const Options& options)
    : m_harness(std::move(harness)),
      m_options(options),
      m_expected(readExpected(options.expected)) {
  if (m_expected.size() > kMostExpected) {
    throw std::runtime_error("the list of expected failures is too long: " + options.expected);
  }
  void* const shared =
      mmap(nullptr, sizeof(Counts), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) {
    throw std::bad_alloc();
  }
  m_counts = new (shared) Counts{};
}

Report::~Report() {
  munmap(m_counts, sizeof(Counts));
}

void Report::performAll(std::size_t count, const std::function<Perform()>& makePerformer) {
  Watch::prepareProcess();
  const Perform perform = makePerformer();
  for (std::size_t next = 0; (next = m_counts->next++) < count;) {
    perform(next);
  }
}

void Report::work(std::size_t count, const std::function<Perform()>& makePerformer) {
  m_counts->next = 0;
  std::fflush(stdout);
  std::vector<pid_t> workers;
  for (int i = 0; i < m_options.jobs; ++i) {
    const pid_t worker = fork();
    if (worker == 0) {
      int status = 0;
      try {
        performAll(count, makePerformer);
      } catch (const std::exception& e) {
        std::printf("BROKEN %s: %s\n", m_harness.c_str(), e.what());
        status = 1;
      }
      std::fflush(stdout);
      _exit(status);
    }
    workers.push_back(worker);
  }
  for (const pid_t worker : workers) {
    int status = 0;
    waitpid(worker, &status, 0);
    m_counts->broken += status == 0 ? 0 : 1;
  }
}

// Each line that fits is noted as met.
bool Report::isExpected(const std::string& full, const std::string& problem) const {
  bool found = false;
  for (std::size_t i = 0; i < m_expected.size(); ++i) {
    if (matches(m_expected[i].first, full) && matches(m_expected[i].second, problem)) {
      m_counts->met[i] = true;
      found = true;
    }
  }
  return found;
}

void Report::tellOfUnmet() const {
  for (std::size_t i = 0; i < m_expected.size(); ++i) {
    if (m_expected[i].first.starts_with(m_harness + "/") && !m_counts->met[i]) {
      std::printf("UNMET %s%s%s: no case fails so any more; take it out of the list\n",
                  m_expected[i].first.c_str(), kBetween, m_expected[i].second.c_str());
    }
  }
}

void Report::add(const std::string& name, const std::string& what, const Problems& problems,
                 const Outcome& outcome) {
  ++m_counts->cases;
  if (!m_options.oneCase.empty()) {
    std::printf("%s [%s]\n%s", name.c_str(), what.c_str(), outcome.text().c_str());
  }
  if (problems.empty()) {
    return;
  }
  const bool known = std::all_of(problems.begin(), problems.end(), [&](const std::string& problem) {
    return isExpected(m_harness + "/" + name, problem);
  });
  ++(known ? m_counts->expected : m_counts->failed);
  if (!known || m_options.isVerbose) {
    std::printf("%s %s/%s: %s [%s]; repeat: scripts/torture.sh --only %s --seed %u --case %s\n",
                known ? "KNOWN" : "FAILED", m_harness.c_str(), name.c_str(),
                joined(problems).c_str(), what.c_str(), m_harness.c_str(), m_options.seed,
                name.c_str());
    std::fflush(stdout);
  }
}

void Report::skip(const std::string& why) {
  ++m_counts->skipped;
  std::printf("SKIPPED %s: %s\n", m_harness.c_str(), why.c_str());
}

bool Report::finish() const {
  if (!m_options.isShort && m_options.oneCase.empty()) {
    tellOfUnmet();
  }
  std::printf("SUMMARY harness=%s cases=%d failed=%d known=%d skipped=%d broken=%d seed=%u\n",
              m_harness.c_str(), m_counts->cases.load(), m_counts->failed.load(),
              m_counts->expected.load(), m_counts->skipped.load(), m_counts->broken.load(),
              m_options.seed);
  std::fflush(stdout);
  return m_counts->failed == 0 && m_counts->broken == 0;
}

}  // namespace torture
