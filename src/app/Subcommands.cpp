#include "Subcommands.h"

std::map<QString, Subcommand>& Subcommands()
{
    static std::map<QString, Subcommand> registry;
    return registry;
}

bool TakeFlag(QStringList& args, const QString& name)
{
    return args.removeAll(name) > 0;
}

QString TakeOption(QStringList& args, const QString& name, const QString& defaultValue)
{
    for (int i = 0; i < args.size(); ++i) {
        if (args[i] == name && i + 1 < args.size()) {
            const QString v = args[i + 1];
            args.remove(i, 2);
            return v;
        }
        if (args[i].startsWith(name + QLatin1Char('='))) {
            const QString v = args[i].mid(name.size() + 1);
            args.remove(i);
            return v;
        }
    }
    return defaultValue;
}

QStringList TakeOptions(QStringList& args, const QString& name)
{
    QStringList values;
    for (int i = 0; i < args.size();) {
        if (args[i] == name && i + 1 < args.size()) {
            values << args[i + 1];
            args.remove(i, 2);
        } else if (args[i].startsWith(name + QLatin1Char('='))) {
            values << args[i].mid(name.size() + 1);
            args.remove(i);
        } else {
            ++i;
        }
    }
    return values;
}

QString EmptyKeyMessage(const QStringList& keys)
{
    for (const QString& k : keys)
        if (k.trimmed().isEmpty())
            return QStringLiteral("The key given with --key is empty: give a record key, e.g. --key 240001.");
    return QString();
}
