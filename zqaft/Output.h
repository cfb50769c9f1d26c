#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

#include "refhost/JsonText.h"

namespace zqaft {

/// Standard output, or a file, could not be written (a full disk, a closed pipe).
class OutputError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Standard output, written in large pieces. What has been put in is shown at flush() at the latest, and by the
/// destructor where an error ends the program's work early. One thread.
class Output {
  public:
    Output();
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    /// To append to; call `offer` afterwards.
    refhost::TextBuffer& text() { return mText; }
    /// Writes what has gathered once it is worth a system call; on a terminal that is always. Throws OutputError.
    void offer();
    bool isTerminal() const { return mTerminal; }
    /// Writes everything now. Throws OutputError.
    void flush();

  private:
    refhost::TextBuffer mText;
    bool mTerminal;
};

/// Writes a file whole, or leaves it as it was; a pipe or a device gets the text as it is. Throws OutputError.
void replaceFile(const std::string& path, std::string_view text);

/// Writes the whole result of a subcommand to a file, as replaceFile(), or for "-" to standard output. Throws
/// OutputError.
void writeResult(const std::string& path, std::string_view text);

}  // namespace zqaft
