#pragma once

#include "shared/Result.h"

#include <span>
#include <string_view>

namespace pelmora::host {

/// What a program tells its caller.
enum class ExitStatus : int { success = 0, failure = 1, badUsage = 2 };

/// One sub-command. `run` gets its words, the command's name first.
struct Command {
  const char* name;
  const char* summary;
  ExitStatus (*run)(std::span<char*> words);
};

// The commands, each in a file of its own name.
ExitStatus runSaver(std::span<char*> words);
ExitStatus runWindow(std::span<char*> words);
ExitStatus runRender(std::span<char*> words);
ExitStatus runCheck(std::span<char*> words);
ExitStatus runIdle(std::span<char*> words);
ExitStatus runDefaults(std::span<char*> words);
ExitStatus runMatch(std::span<char*> words);
ExitStatus runRegister(std::span<char*> words);
ExitStatus runSettings(std::span<char*> words);
ExitStatus runSources(std::span<char*> words);
ExitStatus runUnregister(std::span<char*> words);

/// Whether the saver understands what it is to be given. `words[0]` stands for its name.
[[nodiscard]] Status checkSaverWords(std::span<char*> words);

/// Runs the program: the sub-command that the first word names, or the saver.
ExitStatus runProgram(std::span<char*> words);

/// Says on standard error what is wrong with a command line and where its help is.
ExitStatus badUsage(std::string_view command, std::string_view problem);
/// Says on standard error why a command failed.
ExitStatus failed(std::string_view command, std::string_view problem);
/// Says on standard error what a person had better know.
void note(std::string_view command, std::string_view text);

}  // namespace pelmora::host
