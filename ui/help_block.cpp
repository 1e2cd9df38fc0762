#include "ui/help_block.h"

#include <QRegularExpression>
#include <QVariantMap>

namespace quarrydex::ui {

namespace {

// The end of the address that starts `candidate`: without trailing punctuation, and without a
// closing bracket that has no opening one inside the address.
qsizetype addressLength(QStringView candidate) {
    qsizetype length = candidate.size();
    while (length > 0) {
        const QChar last = candidate[length - 1];
        QStringView address = candidate.first(length);
        if (QStringLiteral(".,:;!?'\"").contains(last) ||
            (last == QLatin1Char(')') && address.count(u'(') < address.count(u')'))) {
            --length;
        } else {
            break;
        }
    }
    return length;
}

// "SCRATCH HARDNESS:", "NEW TO QUARRYDEX?", "LIBRARY lists": capitals that open a line.
QString withLeadWords(const QString& line) {
    static const QRegularExpression lead(
        QStringLiteral("^([A-Z][A-Z'&]+(?: [A-Z][A-Z'&]+)*[:?]?)(?=\\s|$)"));
    QRegularExpressionMatch match = lead.match(line);
    if (!match.hasMatch()) {
        return linkedHelpText(line);
    }
    return QStringLiteral("<b>%1</b>").arg(match.captured(1).toHtmlEscaped()) +
           linkedHelpText(line.mid(match.capturedLength(1)));
}

} // namespace

QString linkedHelpText(const QString& line) {
    static const QRegularExpression address(QStringLiteral("https?://\\S+"));
    QString out;
    qsizetype done = 0;
    for (auto it = address.globalMatch(line); it.hasNext();) {
        QRegularExpressionMatch match = it.next();
        const qsizetype length = addressLength(match.capturedView());
        const QString url = match.captured().left(length).toHtmlEscaped();
        out += line.mid(done, match.capturedStart() - done).toHtmlEscaped();
        out += QStringLiteral("<a href=\"%1\">%1</a>").arg(url);
        done = match.capturedStart() + length;
    }
    return out + line.mid(done).toHtmlEscaped();
}

std::vector<HelpBlock> helpBlocks(const QString& body) {
    static const QRegularExpression numbered(QStringLiteral("^(\\d+\\.) "));
    static const QString bullet = QStringLiteral("\u2022 ");
    std::vector<HelpBlock> blocks;
    for (const QString& paragraph : body.split(QStringLiteral("\n\n"))) {
        bool first = true;
        for (const QString& line : paragraph.split(QLatin1Char('\n'))) {
            if (!first && !blocks.back().marker.isEmpty() && line.startsWith(QLatin1Char(' '))) {
                blocks.back().text += QStringLiteral("<br>") + linkedHelpText(line.trimmed());
                continue;
            }
            HelpBlock block;
            block.opensParagraph = first;
            first = false;
            if (line.startsWith(bullet)) {
                block.marker = bullet.trimmed();
                block.text = linkedHelpText(line.mid(bullet.size()));
            } else if (QRegularExpressionMatch step = numbered.match(line); step.hasMatch()) {
                block.marker = step.captured(1);
                block.text = linkedHelpText(line.mid(step.capturedLength()));
            } else {
                block.text = withLeadWords(line);
            }
            blocks.push_back(std::move(block));
        }
    }
    return blocks;
}

QVariantList helpBlockList(const QString& body) {
    QVariantList list;
    for (const HelpBlock& block : helpBlocks(body)) {
        list.append(QVariantMap{{QStringLiteral("marker"), block.marker},
                                {QStringLiteral("text"), block.text},
                                {QStringLiteral("opensParagraph"), block.opensParagraph}});
    }
    return list;
}

} // namespace quarrydex::ui
