#pragma once
// A failed host call: an error number and a description, as the host reports them.
#include <QString>
#include <stdexcept>

class HostError : public std::runtime_error {
public:
    HostError(int number, const QString& description)
        : std::runtime_error(description.toStdString()), m_number(number), m_description(description) {}
    int Number() const { return m_number; }
    QString Description() const { return m_description; }
    // How every message box and batch command shows a failure: "Error: N - description".
    QString Text() const { return QStringLiteral("Error: ") + QString::number(m_number) + QStringLiteral(" - ") + m_description; }

private:
    int m_number;
    QString m_description;
};

// Error numbers the embedded host and the document use.
namespace HostErr {
constexpr int SqlSyntax = 3075;        // the statement could not be translated or prepared
constexpr int SqlExecute = 3146;       // the database refused to run it
constexpr int MultipleStatements = 3142; // text after the end of the statement
constexpr int NoSuchColumn = 3265;     // item not found in this collection
constexpr int NoCurrentRecord = 3021;
constexpr int NoSuchField = 3270;      // dictionary entry not found
constexpr int FileNotFound = 53;
constexpr int PathNotFound = 76;
constexpr int BadFileFormat = 321;
constexpr int DiskFull = 61;
constexpr int FileAccess = 75;
constexpr int ConnectFailed = 3151;    // the database server cannot be reached or refused the login
constexpr int ReadOnly = 3027;         // the connection is read-only
constexpr int Timeout = 3234;          // the statement ran past its time limit
}
