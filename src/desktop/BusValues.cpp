#include "desktop/BusValues.h"

#include <QDBusArgument>
#include <QDBusVariant>

#include <limits>

namespace pelmora::desktop {

namespace {

plist::Value fromBus(const QVariant& value, int levels);

std::string textFromBus(const QString& text) {
  return QStringView(text).left(kLongestBusText).toUtf8().toStdString();
}

plist::Value numberFromBus(const QVariant& value) {
  switch (value.metaType().id()) {
    case QMetaType::Bool:
      return value.toBool();
    case QMetaType::ULongLong:
      if (value.toULongLong() > std::numeric_limits<std::int64_t>::max()) return value.toDouble();
      return static_cast<std::int64_t>(value.toULongLong());
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
      return static_cast<std::int64_t>(value.toLongLong());
    case QMetaType::Double:
      return value.toDouble();
    default:
      return {};
  }
}

plist::Array listFromBus(const QStringList& texts) {
  plist::Array list;
  for (const QString& each : texts) {
    if (list.size() >= kMostBusEntries) break;
    list.emplace_back(textFromBus(each));
  }
  return list;
}

// Reading an argument that is not const would begin to write one.

plist::Array listFromBus(const QDBusArgument& argument) {
  plist::Array list;
  argument.beginArray();
  while (!argument.atEnd() && list.size() < kMostBusEntries) {
    list.push_back(fromBus(argument.asVariant(), 0));
  }
  argument.endArray();
  return list;
}

plist::Dictionary dictionaryFromBus(const QDBusArgument& argument, int levels) {
  plist::Dictionary dictionary;
  argument.beginMap();
  for (std::size_t read = 0; !argument.atEnd() && read < kMostBusEntries; ++read) {
    argument.beginMapEntry();
    const std::string key = textFromBus(argument.asVariant().toString());
    dictionary.insert_or_assign(key, fromBus(argument.asVariant(), levels));
    argument.endMapEntry();
  }
  argument.endMap();
  return dictionary;
}

/// `levels` of dictionaries may be in it.
plist::Value fromBus(const QVariant& value, int levels) {
  const int type = value.metaType().id();
  if (type == QMetaType::QString) return textFromBus(value.toString());
  if (type == QMetaType::QStringList) return listFromBus(value.toStringList());
  if (type == qMetaTypeId<QDBusVariant>()) {
    const QVariant inner = value.value<QDBusVariant>().variant();
    // A variant in a variant is nothing that anybody sends in earnest.
    if (inner.metaType() == QMetaType::fromType<QDBusVariant>()) return {};
    return fromBus(inner, levels);
  }
  if (type == qMetaTypeId<QDBusArgument>()) {
    const auto argument = value.value<QDBusArgument>();
    const QString signature = argument.currentSignature();
    if (signature == QLatin1String("av")) return listFromBus(argument);
    if (signature == QLatin1String("a{sv}") && levels > 0) {
      return dictionaryFromBus(argument, levels - 1);
    }
    return {};
  }
  return numberFromBus(value);
}

}  // namespace

plist::Value fromBus(const QVariant& value) { return fromBus(value, 2); }

plist::Dictionary dictionaryFromBus(const QVariant& value) {
  plist::Value read = fromBus(value);
  auto* dictionary = read.get<plist::Dictionary>();
  return dictionary ? std::move(*dictionary) : plist::Dictionary();
}

QVariant toBus(const plist::Value& value) {
  if (const auto* text = value.get<std::string>()) return QString::fromStdString(*text);
  if (const auto* truth = value.get<bool>()) return *truth;
  if (const auto* whole = value.get<std::int64_t>()) return qlonglong{*whole};
  if (const auto* real = value.get<double>()) return *real;
  return {};
}

}  // namespace pelmora::desktop
