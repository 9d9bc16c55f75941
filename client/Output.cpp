#include "Output.h"

#include <cstdio>

namespace {

void writeLine(std::FILE *file, const QString &line)
{
    std::fputs((line + QLatin1Char('\n')).toLocal8Bit().constData(), file);
    std::fflush(file);
}

} // namespace

void printLine(const QString &line)
{
    writeLine(stdout, line);
}

void complain(const QString &line)
{
    writeLine(stderr, line);
}
