// The questions that `new` asks in a terminal.
#include <functional>
#include <iostream>
#include <string>

#include "authoring/AuthoringError.h"
#include "authoring/NewSetup.h"
#include "authoring/SafeText.h"

namespace authoring {
namespace {

// The answer without blanks at its ends.
std::string ask(const std::string& question, const std::string& proposed) {
  std::cout << question << (proposed.empty() ? "" : " [" + safeText(proposed) + "]") << ": "
            << std::flush;
  std::string answer;
  if (!std::getline(std::cin, answer)) {
    std::cout << '\n' << std::flush;
    throw AuthoringError("the answers ended; nothing was made");
  }
  const std::size_t first = answer.find_first_not_of(" \t");
  return first == std::string::npos
             ? proposed
             : answer.substr(first, answer.find_last_not_of(" \t") + 1 - first);
}

// Asks until `accept` does not throw.
void askUntil(const std::string& question, const std::string& proposed,
              const std::function<void(const std::string&)>& accept) {
  for (;;) {
    try {
      return accept(ask(question, proposed));
    } catch (const AuthoringError& e) {
      if (!std::cin) {
        throw;
      }
      std::cout << safeText(e.what()) << "\n";
    }
  }
}

// Tries the answer in a field of the options; what is empty there is not asked yet.
std::function<void(const std::string&)> into(NewSetupOptions& options,
                                             std::string NewSetupOptions::*field) {
  return [&options, field](const std::string& answer) {
    NewSetupOptions tried = options;
    tried.*field = answer;
    completeOptions(tried);
    options.*field = answer;
  };
}

void askForJars(NewSetupOptions& options) {
  const auto accept = [&options](const std::string& answer) {
    NewSetupOptions tried = options;
    tried.jars.push_back(answer);
    if (!answer.empty()) {
      checkJars(tried);
      options.jars = tried.jars;
    } else if (options.jars.empty()) {
      checkJars(options);
    }
  };
  askUntil("Jar of your program", "", accept);
  for (std::size_t count = 0; count != options.jars.size();) {
    count = options.jars.size();
    askUntil("Another jar that it needs, or Enter", "", accept);
  }
}

}  // namespace

NewSetupOptions askForOptions(NewSetupOptions options) {
  askForJars(options);
  askUntil("Main class", proposedMainClass(options), into(options, &NewSetupOptions::mainClass));
  askUntil("Java (17+, 8..17 or 21)", completeOptions(options).java,
           into(options, &NewSetupOptions::java));
  askUntil("Title that users see", completeOptions(options).title,
           into(options, &NewSetupOptions::title));
  return completeOptions(options);
}

}  // namespace authoring
