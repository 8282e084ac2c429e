// SPDX-License-Identifier: LGPL-2.1-or-later
//
// The states of SRT's inline mark-up.
//
// The language is any number of these, one behind the other, all tried side by side; white space
// may stand wherever a blank is shown:
//
//     text            any byte but "<" and "{"
//     position code   {an digits}
//     known tags      < b >  < i >  < u >  </ b >  </ i >  </ u >  < font color = "value" >
//     unknown tag     "<", anything but ">" and a line feed, ">"
//
// What a tag does is done on the first byte behind it. A colour's value may hold ">", at which the
// same bytes have become an unknown tag; from there on they are read both ways, as text and as the
// rest of the value, until one of the two comes to nothing.

#pragma once

#include "subtitles/byte-machine.h"

namespace subtitles::srt {

/// What the mark-up machine does, told at `Markup`, whose members these are.
enum class Action : unsigned char {
    AppendByte,
    OpenBold,
    CloseBold,
    OpenItalic,
    CloseItalic,
    OpenUnderline,
    CloseUnderline,
    BeginColor,
    EndColor,
    OpenColor,
    CloseColor,
};

namespace table {

using byte_machine::byte;
using byte_machine::error;
using byte_machine::on;
using byte_machine::otherwise;
using byte_machine::range;

// Letters stand for themselves. White space includes the line feed: a row that tells them apart
// names the line feed first.
constexpr auto Nul = byte('\0');
constexpr auto LineFeed = byte('\n');
constexpr auto Space = range('\t', '\r') | byte(' ');
constexpr auto Digit = range('0', '9');
constexpr auto Less = byte('<');
constexpr auto Greater = byte('>');
constexpr auto BraceOpen = byte('{');
constexpr auto BraceClose = byte('}');
constexpr auto Slash = byte('/');
constexpr auto Equals = byte('=');
constexpr auto Quote = byte('"');

constexpr auto AppendByte = Action::AppendByte;
constexpr auto OpenBold = Action::OpenBold;
constexpr auto CloseBold = Action::CloseBold;
constexpr auto OpenItalic = Action::OpenItalic;
constexpr auto CloseItalic = Action::CloseItalic;
constexpr auto OpenUnderline = Action::OpenUnderline;
constexpr auto CloseUnderline = Action::CloseUnderline;
constexpr auto BeginColor = Action::BeginColor;
constexpr auto EndColor = Action::EndColor;
constexpr auto OpenColor = Action::OpenColor;
constexpr auto CloseColor = Action::CloseColor;

// clang-format off
constexpr byte_machine::Row rows[] = {
    // Plain text.
    {  1, {on(Nul, 111, AppendByte), on(Less, 2), on(BraceOpen, 8), otherwise(1, AppendByte)}},
    // Behind "<". As long as only white space has come, it can still be a known tag.
    {  2, {on(LineFeed, 5), on(Slash, 100), on(Greater, 1), on('b', 30), on('f', 31), on('i', 98),
           on('u', 99), on(Space, 4), otherwise(3)}},
    {  3, {on(LineFeed, error), on(Greater, 1), otherwise(3)}},
    {  4, {on(LineFeed, 5), on(Greater, 1), on('b', 30), on('f', 31), on('i', 98), on('u', 99),
           on(Space, 4), otherwise(3)}},
    // A line feed has been seen: no unknown tag any more, and what leaves the known form is an error.
    {  5, {on('b', 6), on('f', 12), on('i', 26), on('u', 28), on(Space, 5), otherwise(error)}},
    {  6, {on(Greater, 7), on(Space, 6), otherwise(error)}},
    {  7, {on(Nul, 111, OpenBold, AppendByte), on(Less, 2, OpenBold), on(BraceOpen, 8, OpenBold),
           otherwise(1, OpenBold, AppendByte)}},
    // "{an", digits, "}": a position code, recognised and dropped.
    {  8, {on('a', 9), otherwise(error)}},
    {  9, {on('n', 10), otherwise(error)}},
    { 10, {on(Digit, 11), otherwise(error)}},
    { 11, {on(BraceClose, 1), on(Digit, 11), otherwise(error)}},
    // "font color=", after a line feed.
    { 12, {on('o', 13), otherwise(error)}},
    { 13, {on('n', 14), otherwise(error)}},
    { 14, {on('t', 15), otherwise(error)}},
    { 15, {on('c', 16), on(Space, 15), otherwise(error)}},
    { 16, {on('o', 17), otherwise(error)}},
    { 17, {on('l', 18), otherwise(error)}},
    { 18, {on('o', 19), otherwise(error)}},
    { 19, {on('r', 20), otherwise(error)}},
    { 20, {on(Equals, 21), on(Space, 20), otherwise(error)}},
    { 21, {on(Quote, 22), on(Space, 21), otherwise(error)}},
    { 22, {on(Quote, error), otherwise(23, BeginColor)}},
    { 23, {on(Quote, 24, EndColor), otherwise(23)}},
    { 24, {on(Greater, 25), on(Space, 24), otherwise(error)}},
    { 25, {on(Nul, 111, OpenColor, AppendByte), on(Less, 2, OpenColor), on(BraceOpen, 8, OpenColor),
           otherwise(1, OpenColor, AppendByte)}},
    // Italic and underlined, after a line feed.
    { 26, {on(Greater, 27), on(Space, 26), otherwise(error)}},
    { 27, {on(Nul, 111, OpenItalic, AppendByte), on(Less, 2, OpenItalic),
           on(BraceOpen, 8, OpenItalic), otherwise(1, OpenItalic, AppendByte)}},
    { 28, {on(Greater, 29), on(Space, 28), otherwise(error)}},
    { 29, {on(Nul, 111, OpenUnderline, AppendByte), on(Less, 2, OpenUnderline),
           on(BraceOpen, 8, OpenUnderline), otherwise(1, OpenUnderline, AppendByte)}},
    // The known tags while an unknown one is possible, too.
    { 30, {on(LineFeed, 6), on(Greater, 7), on(Space, 30), otherwise(3)}},
    { 31, {on(LineFeed, error), on(Greater, 1), on('o', 32), otherwise(3)}},
    { 32, {on(LineFeed, error), on(Greater, 1), on('n', 33), otherwise(3)}},
    { 33, {on(LineFeed, error), on(Greater, 1), on('t', 34), otherwise(3)}},
    { 34, {on(LineFeed, 15), on(Greater, 1), on('c', 35), on(Space, 34), otherwise(3)}},
    { 35, {on(LineFeed, error), on(Greater, 1), on('o', 36), otherwise(3)}},
    { 36, {on(LineFeed, error), on(Greater, 1), on('l', 37), otherwise(3)}},
    { 37, {on(LineFeed, error), on(Greater, 1), on('o', 38), otherwise(3)}},
    { 38, {on(LineFeed, error), on(Greater, 1), on('r', 39), otherwise(3)}},
    { 39, {on(LineFeed, 20), on(Equals, 40), on(Greater, 1), on(Space, 39), otherwise(3)}},
    { 40, {on(LineFeed, 21), on(Quote, 41), on(Greater, 1), on(Space, 40), otherwise(3)}},
    { 41, {on(LineFeed, 23, BeginColor), on(Quote, 3), on(Greater, 44, BeginColor),
           otherwise(42, BeginColor)}},
    { 42, {on(LineFeed, 23), on(Quote, 43, EndColor), on(Greater, 44), otherwise(42)}},
    { 43, {on(LineFeed, 24), on(Greater, 25), on(Space, 43), otherwise(3)}},
    // Text and the rest of a colour value at once: the ">" in the value has ended an unknown tag.
    { 44, {on(Nul, 112, AppendByte), on(Quote, 45, EndColor, AppendByte), on(Less, 46),
           on(BraceOpen, 51), otherwise(44, AppendByte)}},
    { 45, {on(Nul, 111, AppendByte), on(Less, 2), on(Greater, 25, AppendByte), on(BraceOpen, 8),
           on(Space, 45, AppendByte), otherwise(1, AppendByte)}},
    // Tags in that text, with the value still open.
    { 46, {on(LineFeed, 48), on(Quote, 43, EndColor), on(Slash, 87), on(Greater, 44), on('b', 72),
           on('f', 73), on('i', 85), on('u', 86), on(Space, 47), otherwise(42)}},
    { 47, {on(LineFeed, 48), on(Quote, 43, EndColor), on(Greater, 44), on('b', 72), on('f', 73),
           on('i', 85), on('u', 86), on(Space, 47), otherwise(42)}},
    { 48, {on(Quote, 24, EndColor), on('b', 49), on('f', 55), on('i', 68), on('u', 70),
           on(Space, 48), otherwise(23)}},
    { 49, {on(Quote, 24, EndColor), on(Greater, 50), on(Space, 49), otherwise(23)}},
    { 50, {on(Nul, 112, OpenBold, AppendByte), on(Quote, 45, OpenBold, EndColor, AppendByte),
           on(Less, 46, OpenBold), on(BraceOpen, 51, OpenBold),
           otherwise(44, OpenBold, AppendByte)}},
    { 51, {on(Quote, 24, EndColor), on('a', 52), otherwise(23)}},
    { 52, {on(Quote, 24, EndColor), on('n', 53), otherwise(23)}},
    { 53, {on(Quote, 24, EndColor), on(Digit, 54), otherwise(23)}},
    { 54, {on(Quote, 24, EndColor), on(BraceClose, 44), on(Digit, 54), otherwise(23)}},
    { 55, {on(Quote, 24, EndColor), on('o', 56), otherwise(23)}},
    { 56, {on(Quote, 24, EndColor), on('n', 57), otherwise(23)}},
    { 57, {on(Quote, 24, EndColor), on('t', 58), otherwise(23)}},
    { 58, {on(Quote, 24, EndColor), on('c', 59), on(Space, 58), otherwise(23)}},
    { 59, {on(Quote, 24, EndColor), on('o', 60), otherwise(23)}},
    { 60, {on(Quote, 24, EndColor), on('l', 61), otherwise(23)}},
    { 61, {on(Quote, 24, EndColor), on('o', 62), otherwise(23)}},
    { 62, {on(Quote, 24, EndColor), on('r', 63), otherwise(23)}},
    { 63, {on(Quote, 24, EndColor), on(Equals, 64), on(Space, 63), otherwise(23)}},
    { 64, {on(Quote, 65, EndColor), on(Space, 64), otherwise(23)}},
    { 65, {on(Quote, error), on(Greater, 67, BeginColor), on(Space, 66, BeginColor),
           otherwise(23, BeginColor)}},
    { 66, {on(Quote, 24, EndColor), on(Greater, 67), on(Space, 66), otherwise(23)}},
    { 67, {on(Nul, 112, OpenColor, AppendByte), on(Quote, 45, EndColor, OpenColor, AppendByte),
           on(Less, 46, OpenColor), on(BraceOpen, 51, OpenColor),
           otherwise(44, OpenColor, AppendByte)}},
    { 68, {on(Quote, 24, EndColor), on(Greater, 69), on(Space, 68), otherwise(23)}},
    { 69, {on(Nul, 112, OpenItalic, AppendByte), on(Quote, 45, OpenItalic, EndColor, AppendByte),
           on(Less, 46, OpenItalic), on(BraceOpen, 51, OpenItalic),
           otherwise(44, OpenItalic, AppendByte)}},
    { 70, {on(Quote, 24, EndColor), on(Greater, 71), on(Space, 70), otherwise(23)}},
    { 71, {on(Nul, 112, OpenUnderline, AppendByte),
           on(Quote, 45, OpenUnderline, EndColor, AppendByte), on(Less, 46, OpenUnderline),
           on(BraceOpen, 51, OpenUnderline), otherwise(44, OpenUnderline, AppendByte)}},
    { 72, {on(LineFeed, 49), on(Quote, 43, EndColor), on(Greater, 50), on(Space, 72),
           otherwise(42)}},
    { 73, {on(LineFeed, 23), on(Quote, 43, EndColor), on(Greater, 44), on('o', 74), otherwise(42)}},
    { 74, {on(LineFeed, 23), on(Quote, 43, EndColor), on(Greater, 44), on('n', 75), otherwise(42)}},
    { 75, {on(LineFeed, 23), on(Quote, 43, EndColor), on(Greater, 44), on('t', 76), otherwise(42)}},
    { 76, {on(LineFeed, 58), on(Quote, 43, EndColor), on(Greater, 44), on('c', 77), on(Space, 76),
           otherwise(42)}},
    { 77, {on(LineFeed, 23), on(Quote, 43, EndColor), on(Greater, 44), on('o', 78), otherwise(42)}},
    { 78, {on(LineFeed, 23), on(Quote, 43, EndColor), on(Greater, 44), on('l', 79), otherwise(42)}},
    { 79, {on(LineFeed, 23), on(Quote, 43, EndColor), on(Greater, 44), on('o', 80), otherwise(42)}},
    { 80, {on(LineFeed, 23), on(Quote, 43, EndColor), on(Greater, 44), on('r', 81), otherwise(42)}},
    { 81, {on(LineFeed, 63), on(Quote, 43, EndColor), on(Equals, 82), on(Greater, 44),
           on(Space, 81), otherwise(42)}},
    { 82, {on(LineFeed, 64), on(Quote, 83, EndColor), on(Greater, 44), on(Space, 82),
           otherwise(42)}},
    { 83, {on(LineFeed, 66, BeginColor), on(Quote, 3), on(Greater, 67, BeginColor),
           on(Space, 84, BeginColor), otherwise(42, BeginColor)}},
    { 84, {on(LineFeed, 66), on(Quote, 43, EndColor), on(Greater, 67), on(Space, 84),
           otherwise(42)}},
    { 85, {on(LineFeed, 68), on(Quote, 43, EndColor), on(Greater, 69), on(Space, 85),
           otherwise(42)}},
    { 86, {on(LineFeed, 70), on(Quote, 43, EndColor), on(Greater, 71), on(Space, 86),
           otherwise(42)}},
    { 87, {on(LineFeed, 88), on(Quote, 43, EndColor), on(Greater, 44), on('b', 95), on('i', 96),
           on('u', 97), on(Space, 87), otherwise(42)}},
    { 88, {on(Quote, 24, EndColor), on('b', 89), on('i', 91), on('u', 93), on(Space, 88),
           otherwise(23)}},
    { 89, {on(Quote, 24, EndColor), on(Greater, 90), on(Space, 89), otherwise(23)}},
    { 90, {on(Nul, 112, CloseBold, AppendByte), on(Quote, 45, CloseBold, EndColor, AppendByte),
           on(Less, 46, CloseBold), on(BraceOpen, 51, CloseBold),
           otherwise(44, CloseBold, AppendByte)}},
    { 91, {on(Quote, 24, EndColor), on(Greater, 92), on(Space, 91), otherwise(23)}},
    { 92, {on(Nul, 112, CloseItalic, AppendByte), on(Quote, 45, CloseItalic, EndColor, AppendByte),
           on(Less, 46, CloseItalic), on(BraceOpen, 51, CloseItalic),
           otherwise(44, CloseItalic, AppendByte)}},
    { 93, {on(Quote, 24, EndColor), on(Greater, 94), on(Space, 93), otherwise(23)}},
    { 94, {on(Nul, 112, CloseUnderline, CloseColor, AppendByte),
           on(Quote, 45, CloseUnderline, EndColor, CloseColor, AppendByte),
           on(Less, 46, CloseUnderline, CloseColor), on(BraceOpen, 51, CloseUnderline, CloseColor),
           otherwise(44, CloseUnderline, CloseColor, AppendByte)}},
    { 95, {on(LineFeed, 89), on(Quote, 43, EndColor), on(Greater, 90), on(Space, 95),
           otherwise(42)}},
    { 96, {on(LineFeed, 91), on(Quote, 43, EndColor), on(Greater, 92), on(Space, 96),
           otherwise(42)}},
    { 97, {on(LineFeed, 93), on(Quote, 43, EndColor), on(Greater, 94), on(Space, 97),
           otherwise(42)}},
    // Italic and underlined, while an unknown tag is possible, too.
    { 98, {on(LineFeed, 26), on(Greater, 27), on(Space, 98), otherwise(3)}},
    { 99, {on(LineFeed, 28), on(Greater, 29), on(Space, 99), otherwise(3)}},
    // Behind "</".
    {100, {on(LineFeed, 101), on(Greater, 1), on('b', 108), on('i', 109), on('u', 110),
           on(Space, 100), otherwise(3)}},
    {101, {on('b', 102), on('i', 104), on('u', 106), on(Space, 101), otherwise(error)}},
    {102, {on(Greater, 103), on(Space, 102), otherwise(error)}},
    {103, {on(Nul, 111, CloseBold, AppendByte), on(Less, 2, CloseBold), on(BraceOpen, 8, CloseBold),
           otherwise(1, CloseBold, AppendByte)}},
    {104, {on(Greater, 105), on(Space, 104), otherwise(error)}},
    {105, {on(Nul, 111, CloseItalic, AppendByte), on(Less, 2, CloseItalic),
           on(BraceOpen, 8, CloseItalic), otherwise(1, CloseItalic, AppendByte)}},
    {106, {on(Greater, 107), on(Space, 106), otherwise(error)}},
    {107, {on(Nul, 111, CloseUnderline, CloseColor, AppendByte),
           on(Less, 2, CloseUnderline, CloseColor), on(BraceOpen, 8, CloseUnderline, CloseColor),
           otherwise(1, CloseUnderline, CloseColor, AppendByte)}},
    {108, {on(LineFeed, 102), on(Greater, 103), on(Space, 108), otherwise(3)}},
    {109, {on(LineFeed, 104), on(Greater, 105), on(Space, 109), otherwise(3)}},
    {110, {on(LineFeed, 106), on(Greater, 107), on(Space, 110), otherwise(3)}},
    // The byte 0 has been text: the end. It is a byte like others, should more come.
    {111, {on(Nul, 111, AppendByte), on(Less, 2), on(BraceOpen, 8), otherwise(1, AppendByte)}},
    {112, {on(Nul, 112, AppendByte), on(Quote, 45, EndColor, AppendByte), on(Less, 46),
           on(BraceOpen, 51), otherwise(44, AppendByte)}},
};
// clang-format on

}  // namespace table

/// The machine. Its last states are 111 and 112: the byte 0 at the end has been read as text.
inline constexpr auto markupMachine = byte_machine::compile<table::rows>(Action::AppendByte);
static_assert(markupMachine.states == 113, "112 states, and the error state");
static_assert(markupMachine.classes == 23, "bytes that no row tells apart share a class");

}  // namespace subtitles::srt
