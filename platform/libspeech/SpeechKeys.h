#pragma once

#include <QLatin1String>

/// The keys of a speech request.
namespace libspeech {

constexpr QLatin1String Cancel("cancel");
constexpr QLatin1String Context("context");
constexpr QLatin1String Sentence("sentence");
constexpr QLatin1String SentenceId("sentenceId");
constexpr QLatin1String ServiceId("serviceId");
constexpr QLatin1String Text("text");
constexpr QLatin1String TranslationFile("translationFile");
constexpr QLatin1String Arguments("arguments");
constexpr QLatin1String Translate("translate");

} // namespace libspeech
