// make_catalogue: turns the translations into what the build and the documentation need.
//
// Usage: make_catalogue --traditional|--utf8|--charsets|--page MESSAGES OUTPUT
//
//   --traditional  the texts for C++, each language in the encoding that Unix systems used for it
//   --utf8         the same in UTF-8, with what is needed to write them in the user's charset
//   --charsets     the tables of these charsets
//   --page         a Markdown page with every message in every language
//
// MESSAGES is the folder of corvane-launcher.pot and the PO files. All check everything,
// print a line for each problem on standard error, and write OUTPUT only when there is none.
// Status: 0 done, 1 problems, 2 wrong usage.
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <string>

#include "catalogue/Catalogue.h"
#include "catalogue/Writers.h"

namespace {

using catalogue::Catalogue;
using catalogue::Variant;

std::string traditionalTexts(const Catalogue& all) {
  return catalogue::textsOf(all, Variant::Traditional);
}

std::string utf8Texts(const Catalogue& all) {
  return catalogue::textsOf(all, Variant::Utf8);
}

std::string charsets(const Catalogue&) {
  return catalogue::charsetsOf();
}

const struct {
  const char* option;
  std::string (*write)(const Catalogue&);
} kOutputs[] = {
    {"--traditional", traditionalTexts},
    {"--utf8", utf8Texts},
    {"--charsets", charsets},
    {"--page", catalogue::pageOf},
};

bool writeWhole(const char* path, const std::string& text) {
  std::FILE* file = std::fopen(path, "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  return std::fclose(file) == 0 && written;
}

int make(std::string (*write)(const Catalogue&), const std::string& messages, const char* output) {
  catalogue::Problems problems;
  const Catalogue all = catalogue::readCatalogue(messages, problems);
  if (problems.count() != 0) return 1;
  if (writeWhole(output, write(all))) return 0;
  std::perror(output);
  // The next build would take a partial file as up to date. A device is not removed.
  if (std::filesystem::is_regular_file(output)) std::remove(output);
  return 1;
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc == 4) {
    for (const auto& output : kOutputs) {
      if (std::strcmp(argv[1], output.option) == 0) return make(output.write, argv[2], argv[3]);
    }
  }
  std::fputs("Usage: make_catalogue --traditional|--utf8|--charsets|--page MESSAGES OUTPUT\n",
             stderr);
  return 2;
} catch (const std::exception& problem) {
  std::fprintf(stderr, "make_catalogue: %s\n", problem.what());
  return 1;
}
