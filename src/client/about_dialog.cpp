#include "client/about_dialog.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

#include "controls/pictures.h"
#include "embedded/store/library_versions.h"
#include "notes/literals.h"
#include "notes/version.h"

namespace lens {
namespace {

QString compilerName() {
#if defined(__clang__)
  return u"Clang %1.%2"_s.arg(__clang_major__).arg(__clang_minor__);
#elif defined(__GNUC__)
  return u"GCC %1.%2"_s.arg(__GNUC__).arg(__GNUC_MINOR__);
#else
  return u"C++ %1"_s.arg(__cplusplus);
#endif
}

QString kindOfBuild() {
#ifdef NDEBUG
  return AboutDialog::tr("release");
#else
  return AboutDialog::tr("debug");
#endif
}

}  // namespace

QString programFacts() {
  QStringList facts = {
      AboutDialog::tr("Tessaly Lens %1").arg(programVersion()),
      AboutDialog::tr("Build: %1, %2, %3").arg(compilerName(), QSysInfo::buildAbi(), kindOfBuild()),
      AboutDialog::tr("Qt %1 (built with %2)")
          .arg(QLatin1StringView(qVersion()), QStringLiteral(QT_VERSION_STR))};
  facts += libraryVersions();
  facts += AboutDialog::tr("System: %1").arg(QSysInfo::prettyProductName());
  return facts.join(u'\n');
}

AboutDialog::AboutDialog(QWidget* parent) : QDialog(parent) {
  setObjectName(u"aboutDialog"_s);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("About Tessaly Lens"));
  auto* picture = new QLabel(this);
  picture->setPixmap(pictures::about(QSize(400, 160)));
  picture->setAccessibleName(tr("A document under a lens"));
  auto* words = new QLabel(tr("Inspects and repairs Notes and Domino databases.\n"
                              "Free software under the MIT licence; its libraries keep their own."),
                           this);
  words->setTextFormat(Qt::PlainText);
  auto* facts = new QPlainTextEdit(programFacts(), this);
  facts->setObjectName(u"aboutFacts"_s);
  facts->setAccessibleName(tr("Versions"));
  facts->setReadOnly(true);
  facts->setTabChangesFocus(true);
  facts->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  const auto addButton = [&](const QString& name, const QString& text, const QString& tip) {
    QPushButton* button = buttons->addButton(text, QDialogButtonBox::ActionRole);
    button->setObjectName(name);
    button->setToolTip(tip);
    return button;
  };
  connect(addButton(u"aboutLicence"_s, tr("&Licence"), tr("The licence of the program")),
          &QPushButton::clicked, this, [this] { Q_EMIT documentAsked(u"LICENSE"_s); });
  connect(addButton(u"aboutLibraries"_s, tr("Li&braries"), tr("The libraries of others and their licences")),
          &QPushButton::clicked, this, [this] { Q_EMIT documentAsked(u"THIRD_PARTY.md"_s); });
  connect(addButton(u"aboutCopy"_s, tr("C&opy"), tr("Puts the versions on the clipboard, for a report")),
          &QPushButton::clicked, this, [] { QGuiApplication::clipboard()->setText(programFacts()); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(picture, 0, Qt::AlignHCenter);
  layout->addWidget(words);
  layout->addWidget(facts, 1);
  layout->addWidget(buttons);
}

}  // namespace lens
