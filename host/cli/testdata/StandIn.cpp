// Stands in for the desktop: writes its words, one a line, into began.txt beside itself, waits there for
// end.txt and writes ended.txt.
#include <chrono>
#include <thread>

#include "host/system/HostProgram.h"
#include "platform/Arguments.h"
#include "platform/files/Files.h"

int main(int count, char** arguments) {
  const std::string folder = qx::ProgramFolder();
  std::string words;
  for (const std::string& word : qx::CommandLineWords(count, arguments)) words += word + "\n";
  qx::ReplaceFile(folder + "began.txt", words);
  for (int i = 0; i < 600 && !qx::FileExists(folder + "end.txt"); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  qx::ReplaceFile(folder + "ended.txt", "");
  return 0;
}
