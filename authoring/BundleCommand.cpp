#include "authoring/BundleCommand.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "authoring/JavaBundle.h"
#include "authoring/Listing.h"
#include "authoring/SafeText.h"

namespace authoring {
namespace {

struct BundleOptions {
  std::string source;
  std::string output;
};

int bundle(const BundleOptions& options) {
  const std::int64_t files = bundleJava(options.source, options.output);
  std::printf("%s: a Java of %s\n", safeText(options.output).c_str(),
              countOf(files, "file").c_str());
  return 0;
}

}  // namespace

void addBundleCommand(CLI::App& app, std::function<int()>& chosen) {
  const auto options = std::make_shared<BundleOptions>();
  CLI::App& command =
      *app.add_subcommand("bundle-java", "Make the Java installer of a setup from a Java");
  command
      .add_option("FILE", options->source, "The folder of a JDK or a jlink image, or its archive")
      ->required();
  command.add_option("--output", options->output, "The installer to be made")
      ->type_name("FILE")
      ->required();
  command.callback([options, &chosen] { chosen = [options] { return bundle(*options); }; });
}

}  // namespace authoring
