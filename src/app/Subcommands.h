#pragma once
// Batch subcommands of the pagewright executable. Each lives in its own cmd_*.cpp and
// registers itself with PW_SUBCOMMAND.
#include <QStringList>
#include <functional>
#include <map>

struct Subcommand {
    QString usage;   // e.g. "sql --kind N \"STATEMENT\""
    QString summary; // one line
    std::function<int(const QStringList& args)> run; // args after the subcommand name
};

std::map<QString, Subcommand>& Subcommands();

struct SubcommandRegistration {
    SubcommandRegistration(const QString& name, Subcommand cmd) { Subcommands()[name] = std::move(cmd); }
};

#define PW_CONCAT2(a, b) a##b
#define PW_CONCAT(a, b) PW_CONCAT2(a, b)
#define PW_SUBCOMMAND(name, usage, summary, fn) \
    static SubcommandRegistration PW_CONCAT(pw_subcommand_, __LINE__)(QStringLiteral(name), Subcommand{QStringLiteral(usage), QStringLiteral(summary), fn})

// Small helpers for parsing "--name value" options. They remove what they consume.
bool TakeFlag(QStringList& args, const QString& name);
QString TakeOption(QStringList& args, const QString& name, const QString& defaultValue = QString());
// Every value of an option given more than once, in order; empty values included.
QStringList TakeOptions(QStringList& args, const QString& name);
// The message for a --key given empty (or blank), or "" when every key has text.
QString EmptyKeyMessage(const QStringList& keys);
