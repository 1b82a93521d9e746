#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Corvetape::Architecture {

/// A source file as the rules of the house look at it.
struct SourceFile {
    std::string Path;      ///< from the root of the tree, with slashes: "src/core/text/text.h"
    std::string Text;      ///< as it stands
    std::string Code;      ///< with comments, the inside of literals and preprocessor lines blanked
    std::string Comments;  ///< with everything but comments blanked
};

/// Takes a text apart. `Code` and `Comments` have the length and the line ends of the text, so that a place
/// in one is the same place in the others.
SourceFile ReadSource(std::string path, std::string text);

/// All C++ sources below the given folders of a tree, sorted by path.
std::vector<SourceFile> ReadTree(std::string_view root, const std::vector<std::string>& folders);

/// Number of the line of a place in a text, from 1.
size_t LineOf(std::string_view text, size_t position);

std::vector<std::string_view> LinesOf(std::string_view text);

bool IsHeader(const SourceFile& file);

/// Places at which `word` stands as a whole identifier.
std::vector<size_t> FindWord(std::string_view code, std::string_view word);

}  // namespace Corvetape::Architecture
