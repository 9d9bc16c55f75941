#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(logConnmanService)
Q_DECLARE_LOGGING_CATEGORY(logConnmanServiceProperties)
