// The same through Qt's own calls at run time: by name, and by a method that was looked up once.
#include <QMetaMethod>
#include <QObject>
#include <algorithm>
#include <memory>

#include "bench/component/inputs.hpp"

class Numbers : public QObject {
  Q_OBJECT

 public:
  Q_INVOKABLE int Min(int left, int right) const { return std::min(left, right); }
};

namespace {

using namespace quorl::bench;

const AtStart rows([] {
  const auto numbers = std::make_shared<Numbers>();
  const auto by_name = [=](auto pair) {
    int result = 0;
    QMetaObject::invokeMethod(numbers.get(), "Min", Qt::DirectConnection, Q_RETURN_ARG(int, result),
                              Q_ARG(int, pair.first), Q_ARG(int, pair.second));
    return result;
  };
  Measure(kByName, "Qt invokeMethod", Pairs, by_name);
  const QMetaObject* type = numbers->metaObject();
  const QMetaMethod method = type->method(type->indexOfMethod("Min(int,int)"));
  const auto by_method = [=](auto pair) {
    int result = 0;
    method.invoke(numbers.get(), Qt::DirectConnection, Q_RETURN_ARG(int, result),
                  Q_ARG(int, pair.first), Q_ARG(int, pair.second));
    return result;
  };
  for (const char* work : {kByIdentifier, kThroughTable}) {
    Measure(work, "QMetaMethod", Pairs, by_method);
  }
});

}  // namespace

#include "qt.moc"
