#pragma once

#include <optional>
#include <QStringList>

/// The words of a line, told apart as a shell does: by blanks, but not those within 'quotes', "quotes" or
/// behind a backslash. Nothing when a quote is not closed or nothing follows the last backslash.
std::optional<QStringList> splitWords(const QString &line);

/// The word with backslashes where splitWords() needs them; '' for an empty one.
QString escapedWord(const QString &word);
