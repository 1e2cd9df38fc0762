#pragma once
// The core's values as Qt's: UTF-8 text as QString, stored timestamps as QDateTime.

#include "store/timestamp.h"

#include <QDateTime>
#include <QString>

#include <cmath>
#include <string_view>

namespace quarrydex {

inline QString qs(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline QDateTime toDateTime(Timestamp t) {
    return QDateTime::fromMSecsSinceEpoch(
        static_cast<qint64>(std::llround((t.sinceReference + Timestamp::unixOfReference) * 1000)));
}

} // namespace quarrydex
