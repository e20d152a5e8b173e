#pragma once
// Sample flyers for the demo data folder, made with the report document itself so that they
// open in the designer and print with listing data.
#include <QString>
#include <QStringList>

// Writes the sample flyers that are missing from the flyer folders of the data folder dir
// ("Open House" and "Just Listed" among the templates, "Featured Home" in the demo user's own
// folder). Returns the files written. Throws HostError when the data folder cannot be opened.
QStringList WriteDemoFlyers(const QString& dir);
