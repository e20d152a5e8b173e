#pragma once
// Which records a batch print takes: keys given one by one or in a file, or chosen by a
// condition over the report kind's table; and one slice of them for a shard of a larger run.
#include <QString>
#include <QStringList>
#include <optional>

class FieldDictionary;
class QIODevice;

namespace RenderKeys {

// One key a line; blank lines and surrounding spaces are ignored; "\r\n" ends lines too.
QStringList Read(QIODevice& in);

// The keys of every record of the dictionary's kind that meets condition (the report's
// dialect; empty: every record), in orderBy order (empty: key order), with the user's status
// filter as in data view. Throws HostError 3075 for a condition that could reach outside its
// parentheses or hold a second statement, and the host's errors for a failed query.
QStringList Select(FieldDictionary& dictionary, const QString& condition, const QString& orderBy);

// "I/N" with 1 <= I <= N: the shard's (index, count); nothing for anything else.
std::optional<std::pair<int, int>> ParseShard(const QString& text);

// The index-th of count slices (1-based) of keys in key order (numbers by value): contiguous,
// sizes differing by at most one, together every key exactly once.
QStringList Shard(QStringList keys, int index, int count);

} // namespace RenderKeys
