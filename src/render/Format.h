#pragma once
// The classic Format function: named and custom formats for numbers, dates/times and strings,
// US English. Values usually arrive as text from the database ("5459.4", "2024-03-01",
// "3/1/2024 14:05", "True"); text that reads as a number or a date is formatted as one,
// as the classic function does with a string argument. A null QVariant is Null.
#include <QString>
#include <QVariant>

// Text that reads as neither a number nor a date comes back unchanged from number and date
// formats, as the classic function returns it. Throws FormatError 13 "Type mismatch" for
// values no format takes (lists, maps, points...) and 6 "Overflow" for a date outside
// 1 Jan 100 .. 31 Dec 9999 shown with a date format, or a NaN/infinite number.
QString Format(const QVariant& value, const QString& format);

struct FormatError {
    int number;
    QString description;
};
