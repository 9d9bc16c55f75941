#pragma once

#include <QLatin1String>

/// The keys of a speech request.
namespace libspeech {

const QLatin1String Cancel("cancel");
const QLatin1String Context("context");
const QLatin1String Sentence("sentence");
const QLatin1String SentenceId("sentenceId");
const QLatin1String ServiceId("serviceId");
const QLatin1String Text("text");
const QLatin1String TranslationFile("translationFile");
const QLatin1String Arguments("arguments");
const QLatin1String Translate("translate");

} // namespace libspeech
