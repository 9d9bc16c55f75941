// What must hold however long the daemon lives and whatever its neighbours do, measured: a table of figures.
// The status is 1 when one does not hold.

#include "Figure.h"
#include "Run.h"
#include "Text.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <algorithm>
#include <vector>

using namespace soak;

namespace {

constexpr qint64 longTimeLimitMs = 600000;
constexpr qint64 shortTimeLimitMs = 150000;
/// A test must do the same each time; a soak is to find what nobody thought of.
constexpr quint32 shortSeed = 1;

struct Options
{
    bool isShort = false;
    int times = 1;
    quint32 seed = shortSeed;
    std::vector<Figure> chosen;
};

void list()
{
    QTextStream out(stdout);
    for (const Figure &figure : figures()) {
        out << "%1 %2 (%3, short %4)\n"_s.arg(QLatin1String(figure.name), -12)
                   .arg(QLatin1String(figure.what))
                   .arg(figure.longCount)
                   .arg(figure.shortCount);
    }
}

std::vector<Figure> choose(const QStringList &names)
{
    std::vector<Figure> chosen;
    std::copy_if(
        figures().begin(), figures().end(), std::back_inserter(chosen),
        [&names](const Figure &each) { return names.isEmpty() || names.contains(QLatin1String(each.name)); });
    return chosen;
}

Options parse(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription("Measures what must hold in a long life."_s);
    parser.addHelpOption();
    const QCommandLineOption listOption("list"_s, "List the figures."_s);
    const QCommandLineOption shortOption("short"_s, "The short form."_s);
    const QCommandLineOption figureOption("figure"_s, "Only this one."_s, "name"_s);
    const QCommandLineOption timesOption("times"_s, "Do so many times as much."_s, "n"_s, "1"_s);
    const QCommandLineOption seedOption("seed"_s, "Of the random numbers."_s, "number"_s);
    parser.addOptions({listOption, shortOption, figureOption, timesOption, seedOption});
    parser.process(application);
    if (parser.isSet(listOption)) {
        list();
        std::exit(EXIT_SUCCESS);
    }

    Options options;
    options.isShort = parser.isSet(shortOption);
    options.times = std::max(1, parser.value(timesOption).toInt());
    if (parser.isSet(seedOption)) {
        options.seed = parser.value(seedOption).toUInt();
    } else if (!options.isShort) {
        options.seed = QRandomGenerator::global()->generate();
    }
    options.chosen = choose(parser.values(figureOption));
    return options;
}

bool measure(const Figure &figure, const Options &options)
{
    const int count = options.isShort ? figure.shortCount : figure.longCount;
    const qint64 timeLimitMs = options.isShort ? shortTimeLimitMs : longTimeLimitMs;
    Run run(QLatin1String(figure.name), count * options.times, options.seed, timeLimitMs * options.times);
    figure.measure(run, figure);
    return run.holds();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const Options options = parse(application);
    if (options.chosen.empty()) {
        QTextStream(stderr) << "No such figure; --list lists them.\n";
        return EXIT_FAILURE;
    }
    QTextStream(stdout) << "Seed " << options.seed << "\n\n";
    printHeader();
    bool holds = true;
    for (const Figure &figure : options.chosen) {
        holds = measure(figure, options) && holds;
    }
    return holds ? EXIT_SUCCESS : EXIT_FAILURE;
}
