#include "separators.hpp"

#include <QDialogButtonBox>
#include <QFormLayout>

#include "quorl/qt/values.hpp"
#include "quorl/regional/global_instance.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace desk {

using namespace Qt::StringLiterals;
using namespace quorl;

namespace {

struct Separator {
  RegionalItemEnum item;
  String (Regional::*read)() const;
  const char16_t* label;
};
constexpr std::array<Separator, 4> kSeparators{{
    {riNumDecimalChar, &Regional::NumDecimalChar, u"&Decimal mark of numbers"},
    {riNumThousandChar, &Regional::NumThousandChar, u"&Thousands of numbers"},
    {riMonDecimalChar, &Regional::MonDecimalChar, u"De&cimal mark of amounts"},
    {riMonThousandChar, &Regional::MonThousandChar, u"T&housands of amounts"},
}};

Locale WithSeparators(const String& decimal, const String& thousand) {
  Locale locale = Locale::System();
  if (!decimal.empty()) locale.decimal_separator = decimal;
  if (!thousand.empty()) locale.thousand_separator = thousand;
  return locale;
}

}  // namespace

void UseSeparators() {
  Regional& regional = GlobalInstance<Regional>();
  regional.GetRegional();
  Locale::SetCurrent(WithSeparators(regional.NumDecimalChar(), regional.NumThousandChar()));
  regional.GetRegional();
}

SeparatorsDialog::SeparatorsDialog(QWidget* parent) : QDialog(parent), note_(new QLabel(this)) {
  setObjectName(u"SeparatorsDialog"_s);
  setWindowTitle(u"Separators"_s);
  auto* layout = new QFormLayout(this);
  const Regional& regional = GlobalInstance<Regional>();
  for (std::size_t i = 0; i < edits_.size(); ++i) {
    auto* edit = new QLineEdit(qt::ToQString((regional.*kSeparators.at(i).read)()), this);
    edit->setMaxLength(1);
    edit->setPlaceholderText(u"as the system has it"_s);
    layout->addRow(QString::fromUtf16(kSeparators.at(i).label), edit);
    connect(edit, &QLineEdit::textChanged, this, &SeparatorsDialog::Preview);
    edits_.at(i) = edit;
  }
  note_->setObjectName(u"note"_s);
  note_->setMinimumWidth(320);
  layout->addRow(note_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &SeparatorsDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &SeparatorsDialog::reject);
  layout->addRow(buttons);
  Preview();
}

QString SeparatorsDialog::FaultOf() const {
  const Locale locale =
      WithSeparators(qt::FromQString(edits_[0]->text()), qt::FromQString(edits_[1]->text()));
  if (locale.decimal_separator == locale.thousand_separator) {
    return u"Decimal mark and thousands must differ."_s;
  }
  for (const QLineEdit* edit : edits_) {
    const QString text = edit->text();
    if (!text.isEmpty() && (text[0].isDigit() || u"+-eE"_s.contains(text[0]))) {
      return u"A separator is no digit, sign or E."_s;
    }
  }
  return {};
}

void SeparatorsDialog::Preview() {
  const QString fault = FaultOf();
  note_->setProperty("fault", !fault.isEmpty());
  if (!fault.isEmpty()) return note_->setText(fault);
  const Locale locale =
      WithSeparators(qt::FromQString(edits_[0]->text()), qt::FromQString(edits_[1]->text()));
  const String sample = FormatNumber(1234567.89, u"#,##0.00", locale);
  const bool agree =
      edits_[0]->text() == edits_[2]->text() && edits_[1]->text() == edits_[3]->text();
  note_->setText(qt::ToQString(sample) +
                 (agree ? u""_s : u"\nNumbers and amounts use different separators."_s));
}

void SeparatorsDialog::accept() {
  if (!FaultOf().isEmpty()) return;
  try {
    for (std::size_t i = 0; i < edits_.size(); ++i) {
      GlobalInstance<Regional>().SetRegional(kSeparators.at(i).item,
                                             qt::Lend(edits_.at(i)->text()));
    }
    UseSeparators();
  } catch (const RaisedError& error) {
    note_->setText(qt::ToQString(error.Description()));
    return;
  }
  QDialog::accept();
}

}  // namespace desk
