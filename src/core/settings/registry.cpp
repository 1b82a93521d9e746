#include "core/settings/registry.h"

#include <charconv>
#include <utility>

#include "core/text/numbers.h"
#include "core/text/text.h"
#include "platform/clock.h"
#include "platform/files.h"

#include <fmt/format.h>

namespace Corvetape {

namespace {

constexpr std::string_view TextKind = "text:";
constexpr std::string_view NumberKind = "int:";
constexpr std::string_view DefaultName = "*";
constexpr size_t DefaultValueLimit = 254;

bool IsDefault(std::string_view name) {
    return name.empty() || name == DefaultName || EqualIgnoringCase(name, "(Standard)");
}

std::string_view StoredName(std::string_view name) {
    return IsDefault(name) ? DefaultName : name;
}

/// Characters that would end a line, a name or a section's name, as % and two digits.
std::string Encode(std::string_view text, std::string_view special) {
    std::string result;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        const bool plain =
            code >= 0x20 && character != '%' && special.find(character) == std::string_view::npos;
        result += plain ? std::string(1, character) : fmt::format("%{:02X}", code);
    }
    return result;
}

std::string Decode(std::string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        unsigned int code = 0;
        const bool escape = text[i] == '%' && i + 2 < text.size();
        const char* const digits = text.data() + i + 1;
        if (escape && std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2) {
            result += static_cast<char>(code);
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

std::string EncodeName(std::string_view name) {
    return Encode(name, "=;[");
}

std::string EncodePath(std::string_view keyPath) {
    return Encode(keyPath, "]");
}

std::string UpToNul(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

RegistryValue ReadStored(const std::string& stored) {
    if (stored.starts_with(NumberKind)) {
        int32_t number = 0;
        const char* const end = stored.data() + stored.size();
        const auto [stop, error] = std::from_chars(stored.data() + NumberKind.size(), end, number);
        if (error == std::errc() && stop == end) return number;
    }
    if (stored.starts_with(TextKind)) return Decode(std::string_view(stored).substr(TextKind.size()));
    return stored;
}

std::string Stored(const RegistryValue& value) {
    if (const auto* number = std::get_if<int32_t>(&value)) {
        return std::string(NumberKind) + std::to_string(*number);
    }
    return std::string(TextKind) + Encode(UpToNul(TextOf(value)), "");
}

std::string BranchPath(std::string_view section) {
    std::string path(RegistryBranch);
    if (!section.empty()) path.append("\\").append(section);
    return path;
}

RegistryValue ShortDefault(std::string text, RegistryValue fallback) {
    return text.size() <= DefaultValueLimit ? RegistryValue(std::move(text)) : std::move(fallback);
}

}  // namespace

RegistryBranches::RegistryBranches(Files& files, std::string userFile, std::string machineFile)
    : Disk(files),
      User(files, std::move(userFile), WriteCare::Process),
      Machine(files, std::move(machineFile), WriteCare::Process) {}

RegistryValue RegistryBranches::ReadUserValue(std::string_view section, std::string_view name,
                                              RegistryValue fallback) const {
    return ReadRegistryValue(RegistryRoot::CurrentUser, BranchPath(section), name, std::move(fallback));
}

RegistryValue RegistryBranches::ReadMachineValue(std::string_view section, std::string_view name,
                                                 RegistryValue fallback) const {
    return ReadRegistryValue(RegistryRoot::LocalMachine, BranchPath(section), name, std::move(fallback));
}

bool RegistryBranches::WriteUserValue(std::string_view section, std::string_view name,
                                      const RegistryValue& value) {
    return WriteRegistryValue(RegistryRoot::CurrentUser, BranchPath(section), name, value);
}

bool RegistryBranches::WriteMachineValue(std::string_view section, std::string_view name,
                                         const RegistryValue& value) {
    return WriteRegistryValue(RegistryRoot::LocalMachine, BranchPath(section), name, value);
}

std::optional<int32_t> RegistryBranches::RaiseUserNumber(std::string_view section, std::string_view name) {
    const auto lock = LockOf(RegistryRoot::CurrentUser);
    User.Reload();
    const auto present = static_cast<uint32_t>(RoundToInt32(NumberOf(ReadUserValue(section, name))));
    const auto next = static_cast<int32_t>(present + 1);
    if (!WriteLocked(RegistryRoot::CurrentUser, BranchPath(section), name, next)) return std::nullopt;
    return next;
}

/// Keeps other processes from writing between a look at the file and its replacement. A folder where no lock
/// can be made takes no file either, most likely; the write is tried all the same.
std::unique_ptr<FileLock> RegistryBranches::LockOf(RegistryRoot root) {
    return Disk.Lock(Store(root).Path() + ".lock");
}

const RegistryBranches::VolatileKey* RegistryBranches::FindVolatile(RegistryRoot root,
                                                                    std::string_view keyPath) const {
    if (root != RegistryRoot::CurrentUser) return nullptr;
    const auto found = VolatileKeys.find(LowerCase(keyPath));
    return found == VolatileKeys.end() ? nullptr : &found->second;
}

RegistryBranches::VolatileKey* RegistryBranches::FindVolatile(RegistryRoot root, std::string_view keyPath) {
    if (root != RegistryRoot::CurrentUser) return nullptr;
    const auto found = VolatileKeys.find(LowerCase(keyPath));
    return found == VolatileKeys.end() ? nullptr : &found->second;
}

RegistryValue RegistryBranches::ReadRegistryValue(RegistryRoot root, std::string_view keyPath,
                                                  std::string_view name, RegistryValue fallback) const {
    if (const VolatileKey* key = FindVolatile(root, keyPath)) {
        const auto found = key->find(LowerCase(StoredName(name)));
        if (found != key->end()) {
            return IsDefault(name) ? ShortDefault(TextOf(found->second), std::move(fallback)) : found->second;
        }
        return IsDefault(name) ? RegistryValue(std::string()) : fallback;
    }
    const Profile& store = Store(root);
    const std::string section = EncodePath(keyPath);
    const std::string key = EncodeName(StoredName(name));
    if (!store.HasKey(section, key)) {
        // A key that exists has an empty default value until one is written.
        return IsDefault(name) && !store.Keys(section).empty() ? RegistryValue(std::string()) : fallback;
    }
    RegistryValue value = ReadStored(store.ReadText(section, key, ""));
    return IsDefault(name) ? ShortDefault(TextOf(value), std::move(fallback)) : value;
}

bool RegistryBranches::WriteRegistryValue(RegistryRoot root, std::string_view keyPath, std::string_view name,
                                          const RegistryValue& value) {
    const bool remove = std::holds_alternative<std::monostate>(value) && !IsDefault(name);
    const RegistryValue written = IsDefault(name) ? RegistryValue(TextOf(value)) : value;
    if (VolatileKey* key = FindVolatile(root, keyPath)) {
        if (remove) return key->erase(LowerCase(name)) > 0;
        (*key)[LowerCase(StoredName(name))] = ReadStored(Stored(written));
        return true;
    }
    const auto lock = LockOf(root);
    return WriteLocked(root, keyPath, name, value);
}

bool RegistryBranches::WriteLocked(RegistryRoot root, std::string_view keyPath, std::string_view name,
                                   const RegistryValue& value) {
    const bool remove = std::holds_alternative<std::monostate>(value) && !IsDefault(name);
    const RegistryValue written = IsDefault(name) ? RegistryValue(TextOf(value)) : value;
    Profile& store = Store(root);
    const std::string section = EncodePath(keyPath);
    const std::string key = EncodeName(StoredName(name));
    if (remove) return store.HasKey(section, key) && static_cast<bool>(store.Delete(section, key));
    if (!IsDefault(name) && store.Keys(section).empty() &&
        !store.Write(section, DefaultName, Stored(std::string()))) {
        return false;
    }
    return static_cast<bool>(store.Write(section, key, Stored(written)));
}

bool RegistryBranches::CanWriteMachineBranch(const Clock& clock) {
    const std::string probe = fmt::format("{}", SecondsSinceMidnight(clock.LocalNow()));
    if (!WriteMachineValue("", DefaultName, probe)) return false;
    WriteMachineValue("", DefaultName, std::string());  // the probe did its work, whatever becomes of this
    return true;
}

void RegistryBranches::MakeVolatile(std::string_view keyPath) {
    VolatileKeys.try_emplace(LowerCase(keyPath));
}

std::string TextOf(const RegistryValue& value) {
    if (const auto* number = std::get_if<int32_t>(&value)) return std::to_string(*number);
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    return {};
}

double NumberOf(const RegistryValue& value) {
    if (const auto* number = std::get_if<int32_t>(&value)) return *number;
    if (const auto* text = std::get_if<std::string>(&value)) return LeadingNumber(*text);
    return 0;
}

}  // namespace Corvetape
