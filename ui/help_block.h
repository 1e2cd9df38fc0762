#pragma once
// A help chapter's body as the reading pane lays it out. The body is plain text: blank lines
// between paragraphs, "• " bullets and "1. " numbered steps, a line starting with blanks
// continuing the item above it, and UPPER-CASE lead words.

#include <QString>
#include <QVariantList>

#include <vector>

namespace quarrydex::ui {

// One line of a paragraph, or one list item whose marker ("•", "1.") hangs to the left of
// its text so that wrapped lines align with the text. `text` is Qt styled text: escaped, lead
// words in bold, web addresses as links to themselves.
struct HelpBlock {
    QString marker;
    QString text;
    bool opensParagraph = false;

    bool operator==(const HelpBlock&) const = default;
};

std::vector<HelpBlock> helpBlocks(const QString& body);
// The blocks for QML: maps with marker, text and opensParagraph.
QVariantList helpBlockList(const QString& body);
// `line` escaped for styled text, with every http(s) address made a link to itself. An
// address ends at a blank; a closing bracket or a final full stop, comma or colon that it
// does not need stays outside it.
QString linkedHelpText(const QString& line);

} // namespace quarrydex::ui
