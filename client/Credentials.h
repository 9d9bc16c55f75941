#pragma once

#include "LineReader.h"
#include <QString>

/// Words of a form that are never typed behind a command, where other users and the shell's history would
/// keep them: they are asked for instead.
struct CredentialQuestion
{
    QString formWord;
    QString question;
    LineReader::Echo echo;
};

/// The question for a form's word; null for a word that is typed.
const CredentialQuestion *credentialQuestion(const QString &formWord);

/// What is left of a form to be typed.
QString typedForm(const QString &form);

/// That they are asked for, for help texts.
QString credentialHelp();

/// Whether a question goes without saying: an open network has no passphrase.
bool isNeedless(const CredentialQuestion &question, const QString &networkIdentifier);
