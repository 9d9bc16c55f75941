#include "Explanations.h"

#include "Command.h"
#include "Text.h"

#include <algorithm>
#include <QRegularExpression>

namespace {

const QString manualPage = "/usr/share/man/man8/network-manager.8.gz"_s;

struct Explanation
{
    QString category;
    /// The fixed parts of its texts; what lies between them differs from line to line.
    QStringList texts;
};

QString diagnostics()
{
    return outputOf("zcat"_s, {manualPage})
        .section(".SH DIAGNOSTICS"_s, 1)
        .section(".SH "_s, 0, 0)
        .replace("\\\n"_s, QString())
        .replace("\\(dq"_s, "\""_s)
        .replace("\\-"_s, "-"_s);
}

/// "category: text" in the man page's language: italics and "..." stand for anything, remarks are set in
/// roman.
Explanation parse(const QString &heading)
{
    static const QRegularExpression gap("\\\\f[RI].*?(?:\\\\fP|$)|\\\\f[RIP]|\\.\\.\\.|(?<=[.\"]),"_s);
    const int colon = heading.indexOf(": "_s);
    Explanation explanation{heading.left(colon), {}};
    const QStringList parts = heading.mid(colon + 2).split(gap);
    for (const QString &part : parts) {
        const QString text = part.trimmed();
        if (!text.isEmpty()) {
            explanation.texts.append(text);
        }
    }
    return explanation;
}

QList<Explanation> explanations()
{
    static const QRegularExpression line("^(?:\\.B |\\.BR \")?([A-Za-z.]+: .*?)\"?$"_s,
                                         QRegularExpression::MultilineOption);
    QList<Explanation> all;
    auto matches = line.globalMatch(diagnostics());
    while (matches.hasNext()) {
        all.append(parse(matches.next().captured(1)));
    }
    return all;
}

bool explains(const Explanation &explanation, const QString &line)
{
    return line.startsWith(explanation.category + ": "_s) &&
           std::any_of(explanation.texts.begin(), explanation.texts.end(),
                       [&](const QString &text) { return line.contains(text); });
}

} // namespace

QStringList unexplained(const QStringList &lines)
{
    const QList<Explanation> all = explanations();
    QStringList rest;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(rest), [&](const QString &line) {
        return std::none_of(all.begin(), all.end(),
                            [&](const Explanation &explanation) { return explains(explanation, line); });
    });
    return rest;
}
