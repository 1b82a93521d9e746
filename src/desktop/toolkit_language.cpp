#include "desktop/toolkit_language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace Corvetape {

namespace {

QLocale LocaleOf(const QString& language) {
    for (const QLocale& each :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        if (QLocale::languageToString(each.language()).toLower() == language) return QLocale(each.language());
    }
    return QLocale::c();
}

}  // namespace

void ToolkitLanguage::Speak(const std::string& language) {
    QCoreApplication::removeTranslator(&Texts);
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    const QLocale locale = LocaleOf(QString::fromStdString(language));
    if (Texts.load(locale, "qtbase", "_", folder)) QCoreApplication::installTranslator(&Texts);
}

}  // namespace Corvetape
