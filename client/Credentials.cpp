#include "Credentials.h"

#include <algorithm>
#include <QVector>

const CredentialQuestion *credentialQuestion(const QString &formWord)
{
    using Echo = LineReader::Echo;
    static const QVector<CredentialQuestion> questions = {
        {QStringLiteral("IDENTITY"), QStringLiteral("Identity: "), Echo::Shown},
        {QStringLiteral("[PASSPHRASE]"), QStringLiteral("Passphrase: "), Echo::Secret},
        {QStringLiteral("PASSWORD"), QStringLiteral("Password: "), Echo::Secret},
        {QStringLiteral("PIN"), QStringLiteral("PIN: "), Echo::Secret},
    };
    const auto found = std::find_if(questions.cbegin(), questions.cend(), [&formWord](const auto &question) {
        return question.formWord == formWord;
    });
    return found == questions.cend() ? nullptr : &*found;
}

QString typedForm(const QString &form)
{
    QStringList typed;
    for (const QString &word : form.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (credentialQuestion(word) == nullptr) {
            typed << word;
        }
    }
    return typed.join(QLatin1Char(' '));
}

bool isNeedless(const CredentialQuestion &question, const QString &networkIdentifier)
{
    return question.formWord == QStringLiteral("[PASSPHRASE]") &&
           networkIdentifier.endsWith(QStringLiteral("_none"));
}

QString credentialHelp()
{
    return QStringLiteral(
        "What only you know (passphrase, password, PIN, identity) is asked for, or read from standard "
        "input, one a line; it is never given with the command.");
}
