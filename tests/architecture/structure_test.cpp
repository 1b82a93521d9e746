#include "architecture/structure.h"

#include <gtest/gtest.h>

#include <string>

#include "architecture/source_text.h"

namespace Corvetape::Architecture {
namespace {

/// The heads of all pieces of a kind, as they stand.
std::vector<std::string> HeadsOf(PieceKind kind, const std::string& text) {
    const SourceFile file = ReadSource("src/core/sample.cpp", text);
    std::vector<std::string> heads;
    for (const Piece& piece : PiecesOf(file.Code)) {
        if (piece.Kind != kind) continue;
        std::string head = text.substr(piece.Begin, piece.Open - piece.Begin);
        heads.push_back(head.substr(0, head.find_last_not_of(" \n") + 1));
    }
    return heads;
}

using Heads = std::vector<std::string>;

TEST(SourceText, CommentsAndTheInsideOfLiteralsAreNoCode) {
    const SourceFile file =
        ReadSource("a.cpp", "int a; // new\nauto b = \"new\"; /* new\n new */ char c = '{';");
    EXPECT_TRUE(FindWord(file.Code, "new").empty());
    EXPECT_EQ(file.Code.find('{'), std::string::npos);
    EXPECT_EQ(FindWord(file.Comments, "new").size(), 3u);
    EXPECT_EQ(file.Code.size(), file.Text.size());
}

TEST(SourceText, RawLiteralsEndAtTheirOwnMark) {
    const SourceFile file = ReadSource("a.cpp", "auto a = R\"x(new \" )\" {)x\"; int new_one; delete p;");
    EXPECT_TRUE(FindWord(file.Code, "new").empty());
    EXPECT_EQ(FindWord(file.Code, "delete").size(), 1u);
    EXPECT_EQ(FindWord(file.Code, "new_one").size(), 1u);
}

TEST(SourceText, AnEscapedQuoteDoesNotEndALiteral) {
    const SourceFile file = ReadSource("a.cpp", "auto a = \"x\\\" new\"; char q = '\\''; int b;");
    EXPECT_TRUE(FindWord(file.Code, "new").empty());
    EXPECT_EQ(FindWord(file.Code, "b").size(), 1u);
}

TEST(SourceText, ADigitSeparatorOpensNoLiteral) {
    const SourceFile file = ReadSource("a.cpp", "int a = 1'000; int b = 2'000;");
    EXPECT_EQ(FindWord(file.Code, "b").size(), 1u);
}

TEST(SourceText, PreprocessorLinesAreNoCode) {
    const SourceFile file = ReadSource("a.cpp", "#include <new>\n#define A \\\n  new\nint b;");
    EXPECT_TRUE(FindWord(file.Code, "new").empty());
    EXPECT_EQ(FindWord(file.Code, "b").size(), 1u);
}

TEST(SourceText, LinesAreCountedFromOne) {
    EXPECT_EQ(LineOf("a\nb\nc", 0), 1u);
    EXPECT_EQ(LineOf("a\nb\nc", 4), 3u);
    EXPECT_EQ(LinesOf("a\nb\n").size(), 2u);
}

TEST(PiecesOf, FindsFunctionsInNamespacesAndTypes) {
    EXPECT_EQ(
        HeadsOf(
            PieceKind::Function,
            "namespace A {\nint F(int a) { return a; }\n"
            "class B : public C {\n public:\n  B() { }\n  bool G() const override { return true; }\n};\n}"),
        (Heads{"int F(int a)", "B()", "bool G() const override"}));
}

TEST(PiecesOf, ABodyAfterMemberInitialisersIsAFunction) {
    EXPECT_EQ(HeadsOf(PieceKind::Function, "A::A(int a) : B(a), C{a}, D{{a}} {\n  F();\n}\nvoid E() { }"),
              (Heads{"A::A(int a) : B(a), C{a}, D{{a}}", "void E()"}));
    EXPECT_EQ(HeadsOf(PieceKind::Function, "A::A() : B(X{1}) { F(); }"), (Heads{"A::A() : B(X{1})"}));
}

TEST(PiecesOf, ATestIsAFunction) {
    EXPECT_EQ(HeadsOf(PieceKind::Function, "TEST(A, B) {\n  if (a) { b(); }\n}"), (Heads{"TEST(A, B)"}));
}

TEST(PiecesOf, TemplatesOperatorsAndTrailingTypesAreFunctions) {
    EXPECT_EQ(HeadsOf(PieceKind::Function, "template <typename T = int>\nvoid F(T t) { }"),
              (Heads{"template <typename T = int>\nvoid F(T t)"}));
    EXPECT_EQ(HeadsOf(PieceKind::Function, "A& operator=(const A& a) { return *this; }"),
              (Heads{"A& operator=(const A& a)"}));
    EXPECT_EQ(HeadsOf(PieceKind::Function, "auto F() -> std::vector<int> { return {}; }"),
              (Heads{"auto F() -> std::vector<int>"}));
    EXPECT_EQ(
        HeadsOf(PieceKind::Function, "[[nodiscard]] constexpr bool F(int a = 1) noexcept { return a; }"),
        (Heads{"[[nodiscard]] constexpr bool F(int a = 1) noexcept"}));
}

TEST(PiecesOf, ATableIsAValueAndItsLambdasAreFunctions) {
    const std::string table = "const Entry Table[] = {\n  {1, {2, 3}},\n  {2, [](int a) { return a; }},\n};";
    EXPECT_EQ(HeadsOf(PieceKind::Function, table), (Heads{"[](int a)"}));
    EXPECT_EQ(HeadsOf(PieceKind::Initializer, table).size(), 4u);
    EXPECT_EQ(HeadsOf(PieceKind::Function, "const auto F = [&](int a) { return a; };\nint b = 0;").size(),
              1u);
    EXPECT_TRUE(HeadsOf(PieceKind::Function, "std::array<int, 3> A{1, 2, 3};\nint B = {};").empty());
}

TEST(PiecesOf, BracesInAFunctionArePartOfIt) {
    const std::string text =
        "void F() {\n  struct A { void G() { } };\n  for (;;) { auto l = [] { }; }\n}\nint H() { }";
    EXPECT_EQ(HeadsOf(PieceKind::Function, text), (Heads{"void F()", "int H()"}));
}

TEST(PiecesOf, FreeDeclarationsAreFoundAndMembersAndAliasesAreNot) {
    EXPECT_EQ(HeadsOf(PieceKind::Declaration,
                      "namespace A {\nint F(int a);\nstruct B {\n  void G();\n};\nusing C = int();\n"
                      "inline constexpr int D = E(1);\nclass H;\ntemplate <typename T>\nvoid I(T t);\n}"),
              (Heads{"int F(int a)", "template <typename T>\nvoid I(T t)"}));
}

}  // namespace
}  // namespace Corvetape::Architecture
