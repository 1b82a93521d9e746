#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/settings/profile.h"

namespace Corvetape {

class Clock;
class FileLock;
class Files;

/// Nothing, a text, or a 32-bit number. The two kinds of value keep their kind from write to read.
using RegistryValue = std::variant<std::monostate, std::string, int32_t>;

/// Each root has a file of its own.
enum class RegistryRoot { CurrentUser, LocalMachine };

/// The key path of the program's own branch, the same under both roots.
inline constexpr std::string_view RegistryBranch = "Software\\Norvanta\\Corvet";

/// Named values by key path, in one file for the user and one for the machine. A key path is a section of the
/// file, `Name=int:12` and `Name=text:abc` are its lines; a value written by hand without its kind is a text.
///
/// The value names "*" and "(Standard)" mean the default value of a key. It is always a text of at most 254
/// bytes; a longer one cannot be read. Names and key paths are compared ignoring case.
class RegistryBranches {
 public:
    /// The folders of both files must be there when something is written.
    RegistryBranches(Files& files, std::string userFile, std::string machineFile);

    /// Values of the program's branch. `section` is a key below the branch, empty for the branch itself.
    /// `fallback` is the result if the value is missing.
    RegistryValue ReadUserValue(std::string_view section, std::string_view name,
                                RegistryValue fallback = {}) const;
    RegistryValue ReadMachineValue(std::string_view section, std::string_view name,
                                   RegistryValue fallback = {}) const;

    /// Written at once. No value deletes a named value, and empties a default value. False if the write
    /// failed, or if the value to delete was not there.
    bool WriteUserValue(std::string_view section, std::string_view name, const RegistryValue& value = {});
    bool WriteMachineValue(std::string_view section, std::string_view name, const RegistryValue& value = {});

    /// Raises a number of the user's branch by one and returns it, so that no other process gets the same.
    /// Nothing if it could not be written. A missing one counts as 0; the largest number is followed by the
    /// smallest.
    std::optional<int32_t> RaiseUserNumber(std::string_view section, std::string_view name);

    /// The same over a whole key path, with backslashes between its levels. A key that does not exist is
    /// created with an empty default value.
    RegistryValue ReadRegistryValue(RegistryRoot root, std::string_view keyPath, std::string_view name,
                                    RegistryValue fallback = {}) const;
    bool WriteRegistryValue(RegistryRoot root, std::string_view keyPath, std::string_view name,
                            const RegistryValue& value = {});

    /// Tries a write to the machine's branch: the time of day as its default value, which is emptied again.
    bool CanWriteMachineBranch(const Clock& clock);

    /// The user's key `keyPath` lives in memory only from now on: for values that others report while they
    /// run and that mean nothing after that.
    void MakeVolatile(std::string_view keyPath);

 private:
    using VolatileKey = std::map<std::string, RegistryValue>;

    std::unique_ptr<FileLock> LockOf(RegistryRoot root);
    bool WriteLocked(RegistryRoot root, std::string_view keyPath, std::string_view name,
                     const RegistryValue& value);
    VolatileKey* FindVolatile(RegistryRoot root, std::string_view keyPath);
    const VolatileKey* FindVolatile(RegistryRoot root, std::string_view keyPath) const;
    Profile& Store(RegistryRoot root) { return root == RegistryRoot::CurrentUser ? User : Machine; }
    const Profile& Store(RegistryRoot root) const {
        return root == RegistryRoot::CurrentUser ? User : Machine;
    }

    Files& Disk;
    Profile User;
    Profile Machine;
    std::map<std::string, VolatileKey> VolatileKeys;  // by key path in lower case
};

/// The value as a text: a number in decimal, nothing as an empty text.
std::string TextOf(const RegistryValue& value);

/// The value as a number: a text by the number that it begins with, 0 without one.
double NumberOf(const RegistryValue& value);

}  // namespace Corvetape
