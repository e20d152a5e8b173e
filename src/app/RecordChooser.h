#pragma once
// The records File > Print Many prints: all of the user's listings, or those chosen in the
// property search (several at once).
#include <QStringList>
#include <optional>

class QWidget;

std::optional<QStringList> ChooseRecordsToPrint(QWidget* parent, int databaseKind);
// Makes ChooseRecordsToPrint the report runner's record chooser.
void InstallRecordChooser();
