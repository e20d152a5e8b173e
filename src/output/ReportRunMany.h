#pragma once
// Printing a report for many records from the design window (File > Print Many): the user
// chooses the records, the printer dialog chooses the printer (or a PDF file), and the pages
// stream to it with a progress window that can cancel.
#include "entry/Prompts.h"

#include <QStringList>
#include <functional>
#include <optional>

class QPrinter;
class QWidget;

// Asks which records to print for a database kind; nothing when the user cancels. The
// application installs one that offers the property search; keys are as they stand in SQL.
using RecordChooser = std::function<std::optional<QStringList>(QWidget* parent, int databaseKind)>;
void SetRecordChooser(RecordChooser chooser);

// Chooses the records and prints request.file for them. With printer given (tests, or a
// printer already set up) and an output file name set on it, the printer dialog is skipped.
// Failures are shown with MsgBox. True when pages were printed.
bool PrintReportMany(QWidget* parent, const ReportRunRequest& request, QPrinter* printer = nullptr);
