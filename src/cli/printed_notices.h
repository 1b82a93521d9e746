#pragma once

#include <functional>
#include <string>

namespace Corvetape {

/// Makes one stream of lines of what a running program has to say: its log, and its status line as far as
/// the log does not hold the same.
class PrintedNotices {
 public:
    /// `print` is called with each line that is to be reported.
    explicit PrintedNotices(std::function<void(const std::string& text)> print) : Print(std::move(print)) {}

    /// The line of a song has said what the next line of the log is about.
    void SongReported() { IsReported = true; }

    /// A line of the log. Only "INFO" and "ERROR" are notices.
    void Logged(const std::string& kind, const std::string& text);

    /// The status line shows this text now. A text that only counts on is reported once.
    void Status(const std::string& text);

 private:
    std::function<void(const std::string& text)> Print;
    std::string Shown;        ///< the text of the status line
    bool IsReported = false;  ///< the next notice says nothing new
    std::string JustLogged;   ///< its showing in the status line says nothing new
    std::string JustShown;    ///< its line in the log says nothing new
};

}  // namespace Corvetape
