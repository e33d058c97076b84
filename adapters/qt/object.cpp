#include "quorl/qt/object.hpp"

#include <QMetaMethod>
#include <QMetaProperty>
#include <array>
#include <optional>
#include <vector>

#include "internal/host_object.hpp"

namespace quorl::qt {
namespace {

bool HasName(const QByteArray& name, StringView wanted, Qt::CaseSensitivity sensitivity) {
  return Lend(wanted).compare(QLatin1StringView(name), sensitivity) == 0;
}

// The first of `names` spelt so, else the first that differs in case alone, else -1.
template <class NameAt>
int IndexOfName(int count, StringView wanted, NameAt name_at) {
  for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
    for (int i = 0; i < count; ++i) {
      if (HasName(name_at(i), wanted, sensitivity)) return i;
    }
  }
  return -1;
}

std::optional<QMetaProperty> PropertyNamed(const QObject& object, StringView name) {
  const QMetaObject& type = *object.metaObject();
  const int index = IndexOfName(type.propertyCount(), name,
                                [&](int i) { return QByteArray(type.property(i).name()); });
  if (index < 0) return std::nullopt;
  return type.property(index);
}

std::optional<QByteArray> DynamicNamed(const QObject& object, StringView name) {
  const QList<QByteArray> names = object.dynamicPropertyNames();
  const int index =
      IndexOfName(static_cast<int>(names.size()), name, [&](int i) { return names.at(i); });
  if (index < 0) return std::nullopt;
  return names.at(index);
}

QVariant ReadProperty(const QMetaProperty& property, const QObject& object) {
  if (!property.isReadable()) Raise(FailureNumber::kNoSuchMember);
  const QVariant value = property.read(&object);
  return property.isEnumType() ? QVariant(value.toInt()) : value;
}

std::vector<QMetaMethod> MethodsNamed(const QObject& object, StringView name) {
  std::vector<QMetaMethod> found;
  const QMetaObject& type = *object.metaObject();
  for (int i = 0; i < type.methodCount(); ++i) {
    const QMetaMethod method = type.method(i);
    const bool is_invokable =
        method.access() == QMetaMethod::Public && method.methodType() != QMetaMethod::Signal;
    if (is_invokable && HasName(method.name(), name, Qt::CaseInsensitive)) found.push_back(method);
  }
  return found;
}

constexpr std::size_t kMostArguments = 10;

// The arguments in the method's own types; none where one does not convert.
std::optional<std::vector<QVariant>> ConvertedFor(const QMetaMethod& method, Arguments arguments) {
  std::vector<QVariant> values;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    QVariant value = ToQt(arguments[i]);
    const QMetaType wanted = method.parameterMetaType(static_cast<int>(i));
    const bool is_any = wanted.id() == QMetaType::QVariant;
    if (!is_any && value.metaType() != wanted && !value.convert(wanted)) return std::nullopt;
    values.push_back(std::move(value));
  }
  return values;
}

Variant Invoke(QObject& object, const QMetaMethod& method, std::vector<QVariant>& values) {
  std::array<QGenericArgument, kMostArguments> passed;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const bool is_any = method.parameterMetaType(static_cast<int>(i)).id() == QMetaType::QVariant;
    passed.at(i) = is_any ? QGenericArgument("QVariant", &values[i])
                          : QGenericArgument(values[i].typeName(), values[i].constData());
  }
  const QMetaType type = method.returnMetaType();
  const bool gives_any = type.id() == QMetaType::QVariant;
  QVariant result = type.id() == QMetaType::Void || gives_any ? QVariant() : QVariant(type);
  void* place = gives_any ? static_cast<void*>(&result) : result.data();
  const QGenericReturnArgument given = type.id() == QMetaType::Void
                                           ? QGenericReturnArgument()
                                           : QGenericReturnArgument(type.name(), place);
  const auto& p = passed;
  if (!method.invoke(&object, Qt::DirectConnection, given, p[0], p[1], p[2], p[3], p[4], p[5], p[6],
                     p[7], p[8], p[9])) {
    Raise(FailureNumber::kNoSuchMember);
  }
  return FromQt(result);
}

Variant CallMethod(QObject& object, StringView name, Arguments arguments) {
  const std::vector<QMetaMethod> methods = MethodsNamed(object, name);
  if (methods.empty()) Raise(FailureNumber::kNoSuchMember);
  FailureNumber failure = FailureNumber::kInvalidArgument;
  for (const QMetaMethod& method : methods) {
    if (static_cast<std::size_t>(method.parameterCount()) != arguments.size() ||
        arguments.size() > kMostArguments) {
      continue;
    }
    std::optional<std::vector<QVariant>> values = ConvertedFor(method, arguments);
    if (values) return Invoke(object, method, *values);
    failure = FailureNumber::kTypeMismatch;
  }
  Raise(failure);
}

}  // namespace

Variant HostObject::Get(StringView name, Arguments arguments) {
  QObject& object = Alive();
  if (!arguments.empty()) return CallMethod(object, name, arguments);
  if (const auto property = PropertyNamed(object, name)) {
    return FromQt(ReadProperty(*property, object));
  }
  if (const auto dynamic = DynamicNamed(object, name)) return FromQt(object.property(*dynamic));
  return CallMethod(object, name, arguments);
}

void HostObject::Put(StringView name, Arguments arguments, const Variant& value) {
  QObject& object = Alive();
  if (!arguments.empty()) Raise(FailureNumber::kNoSuchMember);
  if (const auto property = PropertyNamed(object, name)) {
    if (!property->isWritable()) Raise(FailureNumber::kNoSuchMember);
    if (!property->write(&object, ToQt(value))) Raise(FailureNumber::kTypeMismatch);
    return;
  }
  const auto dynamic = DynamicNamed(object, name);
  if (!dynamic) Raise(FailureNumber::kNoSuchMember);
  object.setProperty(*dynamic, ToQt(value));
}

Variant HostObject::Call(StringView name, Arguments arguments) {
  return CallMethod(Alive(), name, arguments);
}

Object ObjectOf(QObject* object) {
  return object == nullptr ? Object() : MakeObject<HostObject>(*object);
}

bool IsOfQt(const Object& object) noexcept {
  return dynamic_cast<const HostObject*>(object.Target()) != nullptr;
}

QObject* QObjectOf(const Object& object) {
  if (object.IsEmpty()) Raise(FailureNumber::kNoObject);
  const auto* host = dynamic_cast<const HostObject*>(object.Target());
  if (host == nullptr) Raise(FailureNumber::kTypeMismatch);
  return &host->Alive();
}

}  // namespace quorl::qt
