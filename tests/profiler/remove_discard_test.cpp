// The rewrite of fragment shaders without discard. Texts that it does not return for are left out here.
#include "profiler/remove_discard.h"
#include "support/string.h"
#include <gtest/gtest.h>
#include <string>

namespace
{

std::string const kFlag = "bool b_tier4_1974_tier5_1975 = false;\n";
std::string const kMain = "\nvoid main()\n{\n\ttier1_1970_original_main_tier6_1980();\n"
                          "\tif(b_tier4_1974_tier5_1975)\n\t\tgl_FragColor = vec4(1.0,0.0,1.0,1.0);\n}\n";

// The rewritten text, or what tells that there is none.
std::string Rewritten(char const* source)
{
    CNEBTString text(source);
    return RemoveDiscard(text) ? std::string(text.data(), text.size()) : "nothing to rewrite";
}

// What is left of a text in front of a lone "discard;": without a "main" nothing else changes.
std::string Uncommented(std::string const& source)
{
    std::string const text = Rewritten((source + "\ndiscard;").c_str());
    std::string const end = "\nb_tier4_1974_tier5_1975 = true; return;";
    if (text.size() < end.size() || text.compare(text.size() - end.size(), end.size(), end) != 0)
        return "not rewritten: " + text;
    return text.substr(0, text.size() - end.size());
}

}  // namespace

// A whole shader of every day, each byte of it.
TEST(RemoveDiscard, AWholeShader)
{
    EXPECT_EQ("bool b_tier4_1974_tier5_1975 = false;\n"
              "precision mediump float; \n"
              "uniform sampler2D s;\n"
              "varying vec2 uv;\n"
              "void tier1_1970_original_main_tier6_1980()\n"
              "{\n"
              "    vec4 c = texture2D(s, uv);\n"
              "    if (c.a < 0.5)\n"
              "    { b_tier4_1974_tier5_1975 = true; return; }\n"
              "    gl_FragColor = c;\n"
              "}\n"
              "\n"
              "void main()\n"
              "{\n"
              "\ttier1_1970_original_main_tier6_1980();\n"
              "\tif(b_tier4_1974_tier5_1975)\n"
              "\t\tgl_FragColor = vec4(1.0,0.0,1.0,1.0);\n"
              "}\n",
              Rewritten("precision mediump float; // everywhere\n"
                        "uniform sampler2D s;\n"
                        "varying vec2 uv;\n"
                        "void main()\n"
                        "{\n"
                        "    vec4 c = texture2D(s, uv);\n"
                        "    if (c.a < 0.5)\n"
                        "    { discard; }\n"
                        "    gl_FragColor = c;\n"
                        "}\n"));
}

// Shaders without the word have no second form.
TEST(RemoveDiscard, WithoutDiscardThereIsNothingToRewrite)
{
    EXPECT_EQ("nothing to rewrite", Rewritten("void main() { gl_FragColor = vec4(1.0); }"));
    EXPECT_EQ("nothing to rewrite", Rewritten(""));
    EXPECT_EQ("nothing to rewrite", Rewritten("void main() { gl_FragColor = vec4(DISCARD); }"));
    EXPECT_EQ("nothing to rewrite", Rewritten("disc ard;"));
}

// Comments go first, so that the word in one does not count.
TEST(RemoveDiscard, ADiscardInACommentDoesNotCount)
{
    EXPECT_EQ("nothing to rewrite", Rewritten("// discard;\nvoid main() {}"));
    EXPECT_EQ("nothing to rewrite", Rewritten("void main() { /* discard; */ }"));
    EXPECT_EQ("nothing to rewrite", Rewritten("void main() {} // may discard"));
    EXPECT_EQ(kFlag +
                  "\nvoid tier1_1970_original_main_tier6_1980() { b_tier4_1974_tier5_1975 = true; return; }" +
                  kMain,
              Rewritten("// nodiscard\nvoid main() { discard; }"));
}

// A line comment goes without its line feed, which a directive needs.
TEST(RemoveDiscard, ALineCommentGoesUpToItsLineFeed)
{
    EXPECT_EQ("#define A 1 \nfloat a;", Uncommented("#define A 1 // one\nfloat a;"));
    EXPECT_EQ("\n\nfloat a;", Uncommented("// one\n// two\nfloat a;"));
    EXPECT_EQ("\nfloat a;", Uncommented("//\nfloat a;"));
    EXPECT_EQ("\nfloat a;", Uncommented("///// a */ /* b /////\nfloat a;"));
}

// The last line of a text needs no line feed.
TEST(RemoveDiscard, ALineCommentWithoutLineFeedCutsTheText)
{
    EXPECT_EQ("b_tier4_1974_tier5_1975 = true; return; ", Rewritten("discard; // main("));
    EXPECT_EQ("b_tier4_1974_tier5_1975 = true; return;", Rewritten("discard;//"));
}

// Only a line feed ends a line: a text with carriage returns alone ends at its first line comment.
TEST(RemoveDiscard, ACarriageReturnEndsNoLineComment)
{
    EXPECT_EQ("nothing to rewrite", Rewritten("// kill\rvoid main() { discard; }\r"));
    EXPECT_EQ("\nfloat a;\r", Uncommented("// one\r\nfloat a;\r"));
}

// A division is no comment, wherever it stands.
TEST(RemoveDiscard, ASlashAloneStays)
{
    EXPECT_EQ("a = b / c/d;", Uncommented("a = b / c/d;"));
    EXPECT_EQ("/ a;", Uncommented("/ a;"));
    EXPECT_EQ("b_tier4_1974_tier5_1975 = true; return;/", Rewritten("discard;/"));
}

// A single block comment goes with both its ends, over lines, and with nothing in its place.
TEST(RemoveDiscard, ABlockCommentGoes)
{
    EXPECT_EQ("float a;", Uncommented("float/* one\n * two\n */ a;"));
    EXPECT_EQ("floata;", Uncommented("float/**/a;"));
    EXPECT_EQ("float a;", Uncommented("/*** a / b // c ***/float a;"));
    EXPECT_EQ("float a;", Uncommented("/*/ not yet */float a;"));
}

// The walk over stars goes on behind the first close: the code between two comments goes with them.
TEST(RemoveDiscard, TheCodeBetweenTwoBlockCommentsGoesToo)
{
    EXPECT_EQ(" float b;", Uncommented("/* a */ precision mediump float; /* b */ float b;"));
    EXPECT_EQ("nothing to rewrite", Rewritten("/* kill */ void main() { discard; } /* end */"));
}

// The walk does not step back with the text that a close removed: a comment that ends before it goes alone.
TEST(RemoveDiscard, ABlockCommentBehindALongerOneGoesAlone)
{
    EXPECT_EQ(" int a;", Uncommented("/* long */ int/*b*/ a;"));
    EXPECT_EQ("float a; float c;  float d;",
              Uncommented("float a;/*a*/ float b; /*b*/ float c; /*c*/ float d;"));
}

// A close without an open takes the text since the last block comment, and stays when there was none.
TEST(RemoveDiscard, ALoneCloseTakesTheTextSinceABlockComment)
{
    EXPECT_EQ(" float b;", Uncommented("/* a */ float a; // see */ float b;"));
    EXPECT_EQ("float a; */ b;", Uncommented("float a; */ b;"));
    EXPECT_EQ("*/ float a;", Uncommented("/* a */*/ float a;"));
}

// Comments of both kinds that begin where one was removed are found as well.
TEST(RemoveDiscard, CommentsThatFollowEachOtherAllGo)
{
    EXPECT_EQ("\nfloat a;", Uncommented("/* a */// b\nfloat a;"));
    EXPECT_EQ("\nfloat a;", Uncommented("// a /* b\n/* c */float a;"));
}

// Behind a close the walk goes on from the same index in a text that has become shorter: what follows it
// closes again if it is a slash, whatever stands in front of that.
TEST(RemoveDiscard, TheWalkGoesOnFromTheSameIndexAfterAClose)
{
    EXPECT_EQ("c", Uncommented("/**/abcd/c"));  // in "abcd/c" the index is 3, and the slash at 4
    EXPECT_EQ("abcde/f", Uncommented("/**/abcde/f"));
    EXPECT_EQ("f", Uncommented("/**/abcd*/f"));  // a star at 4 is found
    EXPECT_EQ("**/float a;", Uncommented("/**//**//**/float a;"));
}

// At the start of the text no char before the word is asked for.
TEST(RemoveDiscard, DiscardAtTheStartOfTheText)
{
    EXPECT_EQ("b_tier4_1974_tier5_1975 = true; return;", Rewritten("discard;"));
    EXPECT_EQ("b_tier4_1974_tier5_1975 = true; return ", Rewritten("discard "));
}

// What may stand before the word: all of the C library's white space, a semicolon, a slash.
TEST(RemoveDiscard, WhatMayStandBeforeDiscard)
{
    EXPECT_EQ("{ b_tier4_1974_tier5_1975 = true; return;}", Rewritten("{ discard;}"));
    EXPECT_EQ("{\tb_tier4_1974_tier5_1975 = true; return;}", Rewritten("{\tdiscard;}"));
    EXPECT_EQ("{\nb_tier4_1974_tier5_1975 = true; return;}", Rewritten("{\ndiscard;}"));
    EXPECT_EQ("{\vb_tier4_1974_tier5_1975 = true; return;}", Rewritten("{\vdiscard;}"));
    EXPECT_EQ("{\fb_tier4_1974_tier5_1975 = true; return;}", Rewritten("{\fdiscard;}"));
    EXPECT_EQ("{\rb_tier4_1974_tier5_1975 = true; return;}", Rewritten("{\rdiscard;}"));
    EXPECT_EQ("{a;b_tier4_1974_tier5_1975 = true; return;}", Rewritten("{a;discard;}"));
    EXPECT_EQ("a/b_tier4_1974_tier5_1975 = true; return;}", Rewritten("a/discard;}"));
}

// What may stand behind the word: the same.
TEST(RemoveDiscard, WhatMayStandBehindDiscard)
{
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return ;", Rewritten(" discard ;"));
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return\t;", Rewritten(" discard\t;"));
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return\n;", Rewritten(" discard\n;"));
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return\v;", Rewritten(" discard\v;"));
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return\f;", Rewritten(" discard\f;"));
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return\r;", Rewritten(" discard\r;"));
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return/a", Rewritten(" discard/a"));
}

// A comment that touches the word is gone before the chars beside it are looked at.
TEST(RemoveDiscard, CommentsBesideDiscard)
{
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return;", Rewritten(" /*a*/discard;"));
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return;", Rewritten(" discard/*a*/;"));
    EXPECT_EQ(" b_tier4_1974_tier5_1975 = true; return\n;", Rewritten(" discard// a\n;"));
}

// All of them are replaced, also where they follow each other.
TEST(RemoveDiscard, EveryDiscardIsReplaced)
{
    EXPECT_EQ("if(a) b_tier4_1974_tier5_1975 = true; return; else b_tier4_1974_tier5_1975 = true; return;",
              Rewritten("if(a) discard; else discard;"));
    EXPECT_EQ("b_tier4_1974_tier5_1975 = true; return;b_tier4_1974_tier5_1975 = true; return;",
              Rewritten("discard;discard;"));
    EXPECT_EQ("b_tier4_1974_tier5_1975 = true; return b_tier4_1974_tier5_1975 = true; return ",
              Rewritten("discard discard "));
}

// Without braces the condition covers the assignment alone: every fragment returns early.
TEST(RemoveDiscard, AnUnbracedDiscardReturnsUnconditionally)
{
    EXPECT_EQ(kFlag +
                  "void tier1_1970_original_main_tier6_1980() {\n"
                  "  if (a < 0.5) b_tier4_1974_tier5_1975 = true; return;\n"
                  "  gl_FragColor = c;\n}\n" +
                  kMain,
              Rewritten("void main() {\n"
                        "  if (a < 0.5) discard;\n"
                        "  gl_FragColor = c;\n}\n"));
}

// A part of a shader keeps the flag undeclared: another part has the main.
TEST(RemoveDiscard, WithoutMainNoFlagIsDeclared)
{
    EXPECT_EQ("void kill() { b_tier4_1974_tier5_1975 = true; return; }",
              Rewritten("void kill() { discard; }"));
    EXPECT_EQ("void MAIN() { b_tier4_1974_tier5_1975 = true; return; }",
              Rewritten("void MAIN() { discard; }"));
    EXPECT_EQ("void ma() { b_tier4_1974_tier5_1975 = true; return; }\n",
              Rewritten("void ma/*in*/() { discard; }\n// main()"));
}

// White space of every kind or a bracket may follow main.
TEST(RemoveDiscard, WhatMayStandBehindMain)
{
    EXPECT_EQ(kFlag + " b_tier4_1974_tier5_1975 = true; return; tier1_1970_original_main_tier6_1980(" + kMain,
              Rewritten(" discard; main("));
    EXPECT_EQ(kFlag + " b_tier4_1974_tier5_1975 = true; return; tier1_1970_original_main_tier6_1980 (void)" +
                  kMain,
              Rewritten(" discard; main (void)"));
    EXPECT_EQ(kFlag + " b_tier4_1974_tier5_1975 = true; return; tier1_1970_original_main_tier6_1980\t()" +
                  kMain,
              Rewritten(" discard; main\t()"));
    EXPECT_EQ(kFlag + " b_tier4_1974_tier5_1975 = true; return; tier1_1970_original_main_tier6_1980\n()" +
                  kMain,
              Rewritten(" discard; main\n()"));
    EXPECT_EQ(kFlag + " b_tier4_1974_tier5_1975 = true; return; tier1_1970_original_main_tier6_1980()" +
                  kMain,
              Rewritten(" discard; main/*a*/()"));
}

// White space has to stand before main, but at the start of the text.
TEST(RemoveDiscard, WhatMayStandBeforeMain)
{
    EXPECT_EQ(kFlag + "tier1_1970_original_main_tier6_1980() { b_tier4_1974_tier5_1975 = true; return; }" +
                  kMain,
              Rewritten("main() { discard; }"));
    EXPECT_EQ(kFlag +
                  "void\ntier1_1970_original_main_tier6_1980() { b_tier4_1974_tier5_1975 = true; return; }" +
                  kMain,
              Rewritten("void\nmain() { discard; }"));
    EXPECT_EQ(kFlag +
                  "void\ttier1_1970_original_main_tier6_1980() { b_tier4_1974_tier5_1975 = true; return; }" +
                  kMain,
              Rewritten("void\tmain() { discard; }"));
}

// Longer names keep theirs, and the real main among them is found.
TEST(RemoveDiscard, NamesThatContainMainStay)
{
    EXPECT_EQ(kFlag +
                  "vec4 mainColor; void xmain() {} void main2() {} void remains() {}\n"
                  "void tier1_1970_original_main_tier6_1980() { b_tier4_1974_tier5_1975 = true; return; }" +
                  kMain,
              Rewritten("vec4 mainColor; void xmain() {} void main2() {} void remains() {}\n"
                        "void main() { discard; }"));
}

// Any "main" at all brings flag and wrapper, though none is renamed.
TEST(RemoveDiscard, AMainThatIsNotRenamedStillHasTheTextWrapped)
{
    EXPECT_EQ(kFlag + "void xmain() { b_tier4_1974_tier5_1975 = true; return; }" + kMain,
              Rewritten("void xmain() { discard; }"));
    EXPECT_EQ(kFlag + "mainmain() { b_tier4_1974_tier5_1975 = true; return; }" + kMain,
              Rewritten("mainmain() { discard; }"));
    EXPECT_EQ(kFlag + "b_tier4_1974_tier5_1975 = true; return; main" + kMain, Rewritten("discard; main"));
    EXPECT_EQ(kFlag + "b_tier4_1974_tier5_1975 = true; return;main(" + kMain, Rewritten("discard;main("));
}

// A prototype, or a main under each branch of a condition: all are renamed.
TEST(RemoveDiscard, EveryMainIsRenamed)
{
    EXPECT_EQ(kFlag +
                  "void tier1_1970_original_main_tier6_1980();\n#ifdef A\n"
                  "void tier1_1970_original_main_tier6_1980() {}\n#else\n"
                  "void tier1_1970_original_main_tier6_1980() { b_tier4_1974_tier5_1975 = true; return; "
                  "}\n#endif\n" +
                  kMain,
              Rewritten("void main();\n#ifdef A\nvoid main() {}\n#else\nvoid main() { discard; }\n#endif\n"));
}

// The flag is put in front of everything, though nothing may stand before a version.
TEST(RemoveDiscard, TheFlagStandsBeforeAVersion)
{
    EXPECT_EQ(
        kFlag +
            "#version 100\nvoid tier1_1970_original_main_tier6_1980() { b_tier4_1974_tier5_1975 = true; "
            "return; }" +
            kMain,
        Rewritten("#version 100\nvoid main() { discard; }"));
}

// Bytes above 127 are no white space, and no index for the tables of the C library either.
TEST(RemoveDiscard, BytesAboveAsciiAreNoWhiteSpace)
{
    EXPECT_EQ(kFlag + "b_tier4_1974_tier5_1975 = true; return;\xC3\xA0main() main\xA0()" + kMain,
              Rewritten("discard;\xC3\xA0main() main\xA0()"));
}

// A text that was rewritten has nothing left to rewrite.
TEST(RemoveDiscard, ARewrittenTextHasNothingLeftToRewrite)
{
    CNEBTString text("void main() { discard; }");
    EXPECT_TRUE(RemoveDiscard(text));
    EXPECT_FALSE(RemoveDiscard(text));
}
