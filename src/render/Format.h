#pragma once
// The classic Format function: named and custom formats for numbers, dates/times and strings,
// US English. Values usually arrive as text from the database ("5459.4", "2024-03-01",
// "3/1/2024 14:05", "True"); text that reads as a number or a date is formatted as one,
// as the classic function does with a string argument. A null QVariant is Null.
#include <QString>
#include <QVariant>

// Throws FormatError when the value cannot be formatted with that format (for example a
// non-numeric, non-date text with a numeric-only format where the classic function fails).
QString Format(const QVariant& value, const QString& format);

struct FormatError {
    int number;
    QString description;
};
