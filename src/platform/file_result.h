#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace Corvetape {

/// How an operation on a file ended: well, or with what was attempted, where, and why it was refused.
/// True if it went well; it holds nothing and costs no memory then.
struct FileResult {
    std::string_view Attempt;  ///< a word such as "write", which lives as long as the program
    std::string Path;
    std::error_code Error;  ///< none if it went well

    explicit operator bool() const { return !Error; }

    /// The system's number of the failure (errno); 0 if it went well.
    int32_t Code() const { return Error.value(); }

    /// The number and the system's own words, such as "28: No space left on device"; empty if it went well.
    std::string Reason() const { return Error ? std::to_string(Code()) + ": " + Error.message() : ""; }

    /// A line for people, such as "write /music/a.wav: No space left on device (28)"; empty if it went well.
    std::string Text() const {
        if (!Error) return "";
        return std::string(Attempt) + " " + Path + ": " + Error.message() + " (" + std::to_string(Code()) +
               ")";
    }

    bool operator==(const FileResult&) const = default;
};

/// What a file was asked for, or why it did not give it.
template <class Value>
struct FileOr : std::optional<Value> {
    FileOr(Value value) : std::optional<Value>(std::move(value)) {}  // NOLINT(google-explicit-constructor)
    FileOr(FileResult failure) : Failure(std::move(failure)) {}      // NOLINT(google-explicit-constructor)

    FileResult Failure;  ///< good if there is a value
};

/// An open file, or why it could not be opened.
template <class Handle>
struct Opened : std::unique_ptr<Handle> {
    template <class Kind>
    Opened(std::unique_ptr<Kind> file)  // NOLINT(google-explicit-constructor)
        : std::unique_ptr<Handle>(std::move(file)) {}
    Opened(FileResult failure) : Failure(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

    FileResult Failure;  ///< good if it is open
};

}  // namespace Corvetape
