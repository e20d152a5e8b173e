#pragma once
// Windows-1252, the 8-bit text of report files and INI files.
#include <QByteArray>
#include <QString>

QString FromCp1252(const QByteArray& bytes);
QString FromCp1252(const char* data, qsizetype size);
// Characters outside the code page become "?".
QByteArray ToCp1252(const QString& text);
