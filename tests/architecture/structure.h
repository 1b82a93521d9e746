#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace Corvetape::Architecture {

enum class PieceKind {
    Namespace,
    Type,
    Function,     ///< with its body; also a test and a lambda of a table
    Declaration,  ///< of a free function, without a body
    Initializer,  ///< braces of a value
};

/// A piece of code that is not inside a function.
struct Piece {
    PieceKind Kind = PieceKind::Namespace;
    size_t Begin = 0;  ///< first character of its head
    size_t Open = 0;   ///< its brace; of a declaration its semicolon
    size_t End = 0;    ///< last character
    size_t Depth = 0;  ///< number of types and functions around it
};

/// Takes code apart into its pieces, in the order of their ends. Made for code as clang-format lays it out,
/// with comments, literals and preprocessor lines blanked; it does not understand the language otherwise.
std::vector<Piece> PiecesOf(std::string_view code);

}  // namespace Corvetape::Architecture
