#include <QString>

#include "bench/text/inputs.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "Qt";

// The same inputs in Qt's form.
template <class Make>
auto InQt(Make make) {
  return
      [=] { return Turned(make(), [](const String& t) { return QString::fromStdU16String(t); }); };
}

QStringView View(StringView text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

QString Token(const QString& text, QChar separator, int index) {
  qsizetype start = 0;
  for (; index > 1; --index) {
    const qsizetype found = text.indexOf(separator, start);
    if (found < 0) return {};
    start = found + 1;
  }
  const qsizetype end = text.indexOf(separator, start);
  return text.mid(start, end < 0 ? -1 : end - start);
}

QString Replaced(QString text) {
  static const QString replacement = View(kNew).toString();
  const qsizetype at = text.indexOf(View(kOld));
  return at < 0 ? text : text.replace(at, kOld.size(), replacement);
}

QString Shortened(const QString& text) {
  QString shortened;
  shortened.reserve(20);
  return shortened.append(QStringView(text).left(8))
      .append(u"...")
      .append(QStringView(text).right(9));
}

QString Trimmed(const QString& text) {
  qsizetype end = text.size();
  while (end > 0 && text[end - 1] == u' ') --end;
  while (end > 0 && text[end - 1] == u'0') --end;
  return text.left(end);
}

const AtStart rows([] {
  Measure(kCountOne, AtSize(kWho, kMillion), StretchesOf(kMillion),
          [](StringView text) { return View(text).count(u';'); });
  Measure(kCountWord, AtSize(kWho, kMillion), StretchesOf(kMillion),
          [](StringView text) { return View(text).count(View(kCountedWord)); });
  MeasureWorstFind(
      kWho, [](StringView text, StringView sought) { return View(text).indexOf(View(sought)); });
  Measure(kToken, kWho, InQt(Lines), [](const QString& text) { return Token(text, u';', 3); });
  Measure(kReplace, kWho, InQt(TextsWithOld), Replaced);
  Measure(kPad, kWho, InQt(Figures),
          [](const QString& text) { return text.rightJustified(20, u'*'); });
  Measure(kShorten, kWho, InQt(Names), Shortened);
  Measure(kTrim, kWho, InQt(FiguresWithZeros), Trimmed);
});

}  // namespace
