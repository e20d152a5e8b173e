#pragma once
// Shared fixtures of the host tests.
#include "entry/Recordset.h"

#include <QString>
#include <QStringList>
#include <memory>

// A demo data folder with 60 listings, generated once per test program.
QString SmallDemoFolder();

// Every row of a recordset, values as text ("<Null>" for Null), columns joined by "|".
QStringList RowsOf(Recordset& rs);
