#include "authoring/VerifyCommand.h"

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "authoring/SafeText.h"
#include "authoring/SeekableInput.h"
#include "authoring/Verification.h"

namespace authoring {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kStatusDamaged = 1;
constexpr int kStatusUnknown = 3;  // 2 is wrong usage

struct VerifyOptions {
  std::vector<std::string> setups;
  bool json = false;
};

struct Result {
  std::string label;
  std::optional<Verification> verification;
  std::string error;  // why there is none
};

Result resultOf(const std::string& path) {
  Result result{safeText(inputLabel(path)), {}, ""};
  try {
    result.verification = verifySetup(path);
  } catch (const std::exception& e) {
    result.error = e.what();
  }
  return result;
}

const char* stateOf(const Result& result) {
  if (!result.verification) {
    return "unreadable";
  }
  switch (result.verification->soundness) {
    case Soundness::kSound:
      return "sound";
    case Soundness::kDamaged:
      return "damaged";
    case Soundness::kUnknown:
      return "unknown";
  }
  return "";
}

int statusOf(const Result& result) {
  if (!result.verification || result.verification->soundness == Soundness::kDamaged) {
    return kStatusDamaged;
  }
  return result.verification->soundness == Soundness::kSound ? 0 : kStatusUnknown;
}

// Damage outweighs what is not known.
int statusOf(const std::vector<Result>& results) {
  int status = 0;
  for (const Result& result : results) {
    const int own = statusOf(result);
    status = own == kStatusDamaged || status == 0 ? own : status;
  }
  return status;
}

void show(const Result& result) {
  if (!result.verification) {
    std::fprintf(stderr, "corvane-pack: %s\n", safeText(result.error).c_str());
    return;
  }
  const Verification& verification = *result.verification;
  const std::string begin = result.label + ": " + stateOf(result) + ": ";
  if (verification.faults.empty()) {
    std::printf("%s%s\n", begin.c_str(), verification.summary.c_str());
  }
  for (const std::string& fault : verification.faults) {
    std::printf("%s%s\n", begin.c_str(), fault.c_str());
  }
}

void showAsJson(const std::vector<Result>& results) {
  Json json;
  json["setups"] = Json::array();
  for (const Result& result : results) {
    Json setup;
    setup["file"] = result.label;
    setup["state"] = stateOf(result);
    setup["faults"] = result.verification ? result.verification->faults
                                          : std::vector<std::string>{safeText(result.error)};
    json["setups"].push_back(setup);
  }
  std::printf("%s\n", json.dump(2, ' ', true, Json::error_handler_t::replace).c_str());
}

int verify(const VerifyOptions& options) {
  std::vector<Result> results;
  for (const std::string& path : options.setups) {
    results.push_back(resultOf(path));
    if (!options.json) {
      show(results.back());
    }
  }
  if (options.json) {
    showAsJson(results);
  }
  return statusOf(results);
}

}  // namespace

void addVerifyCommand(CLI::App& app, std::function<int()>& chosen) {
  const auto options = std::make_shared<VerifyOptions>();
  CLI::App& command = *app.add_subcommand(
      "verify", "Tell whether setups are as they were packed, and what was damaged");
  command.add_option("SETUP", options->setups, "Launcher files; - for standard input")->required();
  command.add_flag("--json", options->json, "For programs");
  command.callback([options, &chosen] { chosen = [options] { return verify(*options); }; });
}

}  // namespace authoring
