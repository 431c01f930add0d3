#include "app/common/Format.h"

#include "app/common/Text.h"
#include "core/base/text/ByteCount.h"
#include "core/base/values/Calendar.h"
#include "core/localization/LocalizationManager.h"
#include "core/localization/ThreadSafeLanguageStore.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/reldatefmt.h>

#include <QDateTime>

#include <array>
#include <cmath>
#include <memory>
#include <utility>

namespace orvane {
namespace {

constexpr double secondsPerMillisecond = 1e-3;

Date dateFromMilliseconds(double milliseconds) {
  return dateFromReferenceSeconds(milliseconds * secondsPerMillisecond - referenceDateUnixSeconds);
}

QString qtText(const icu::UnicodeString& text) {
  return QString(reinterpret_cast<const QChar*>(text.getBuffer()), text.length());
}

using icu::DateFormat;
using MadeFormat = std::unique_ptr<DateFormat>;

// Empty where there is no format.
QString dateText(MadeFormat format, double milliseconds, UDisplayContext context = UDISPCTX_CAPITALIZATION_NONE) {
  icu::UnicodeString text;
  if (!format) return {};
  UErrorCode status = U_ZERO_ERROR;
  format->setContext(context, status);
  format->format(milliseconds, text);
  return qtText(text);
}

struct AgeUnit {
  std::int64_t days;  // from which on it is used
  double daysEach;
  UDateRelativeUnit unit;
};
constexpr std::array ageUnits{
    AgeUnit{730, 365.25, UDAT_RELATIVE_YEARS},
    AgeUnit{60, 30.44, UDAT_RELATIVE_MONTHS},
    AgeUnit{14, 7, UDAT_RELATIVE_WEEKS},
    AgeUnit{2, 1, UDAT_RELATIVE_DAYS},
};

icu::UnicodeString ageText(const icu::RelativeDateTimeFormatter& format, std::int64_t days) {
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString text;
  if (days <= 0) return format.format(UDAT_DIRECTION_THIS, UDAT_ABSOLUTE_DAY, text, status);
  if (days == 1) return format.format(UDAT_DIRECTION_LAST, UDAT_ABSOLUTE_DAY, text, status);
  for (const auto& unit : ageUnits) {
    if (days < unit.days) continue;
    const double quantity = std::floor(static_cast<double>(days) / unit.daysEach);
    return format.format(quantity, UDAT_DIRECTION_LAST, unit.unit, text, status);
  }
  return text;
}

// Days of the calendar, not of 24 hours: late last night is yesterday.
std::int64_t calendarDaysSince(double milliseconds) {
  const auto then = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(milliseconds)).date();
  return then.daysTo(QDate::currentDate());
}

}  // namespace

Format::Format(QObject* parent) : QObject(parent) {}

void Format::followLanguage() {
  const auto language = ThreadSafeLanguageStore::shared().currentLanguage();
  // Who reads German in Austria also reads Austrian numbers.
  const auto environment = environmentLocale();
  const auto system = icu::Locale::createCanonical(environment.c_str());
  const auto chosen = icu::Locale::createCanonical(std::string(rawValue(language)).c_str());
  const bool isSystemLanguage = !environment.empty() && appLanguageForLocale(environment) == language &&
                                std::string_view(system.getLanguage()) == chosen.getLanguage();
  UErrorCode status = U_ZERO_ERROR;
  icu::Locale::setDefault(isSystemLanguage ? system : chosen, status);
}

void Format::languageChanged() {
  ++m_revision;
  Q_EMIT revisionChanged();
}

QString Format::bytes(double value) {
  const auto bytes = static_cast<std::int64_t>(value);
  if (bytes == 0) return localizedText("unit.zero");
  if (bytes > 0 && bytes < 1000) return countedText("unit.byte", bytes);
  const auto text = formatByteCount(bytes);
  const auto space = text.rfind(' ');
  if (space == std::string::npos) return textFrom(text);
  // The number and its unit stay on one line.
  return textFrom(text.substr(0, space)) + QChar(QChar::Nbsp) + localizedText("unit." + text.substr(space + 1));
}

QString Format::count(double value) {
  return textFrom(formatCount(static_cast<std::int64_t>(value)));
}

QString Format::counted(const QString& key, double value) {
  return countedText(key.toStdString(), static_cast<std::int64_t>(value));
}

QString Format::dateTime(double milliseconds) {
  return milliseconds == 0 ? QString() : textFrom(formatDateTime(dateFromMilliseconds(milliseconds)));
}

QString Format::moment(double milliseconds, bool standsAlone) {
  if (milliseconds == 0) return {};
  MadeFormat format(DateFormat::createDateTimeInstance(DateFormat::kMediumRelative, DateFormat::kShort));
  return dateText(
      std::move(format), milliseconds,
      standsAlone ? UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE : UDISPCTX_CAPITALIZATION_FOR_MIDDLE_OF_SENTENCE);
}

QString Format::day(double milliseconds) {
  if (milliseconds == 0) return {};
  return dateText(MadeFormat(DateFormat::createDateInstance(DateFormat::kMedium)), milliseconds);
}

QString Format::time(double milliseconds) {
  if (milliseconds == 0) return {};
  return dateText(MadeFormat(DateFormat::createTimeInstance(DateFormat::kShort)), milliseconds);
}

QString Format::dayHead(const QString& day, const QString& today) {
  const auto date = QDate::fromString(day, Qt::ISODate);
  const auto daysAgo = date.daysTo(QDate::fromString(today, Qt::ISODate));
  constexpr auto atBeginning = UDISPCTX_CAPITALIZATION_FOR_BEGINNING_OF_SENTENCE;
  if (daysAgo == 0 || daysAgo == 1) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::RelativeDateTimeFormatter words(icu::Locale::getDefault(), nullptr, UDAT_STYLE_LONG, atBeginning,
                                               status);
    return U_SUCCESS(status) ? qtText(ageText(words, daysAgo)) : QString();
  }
  const auto noon = static_cast<double>(QDateTime(date, QTime(12, 0)).toMSecsSinceEpoch());
  return dateText(MadeFormat(DateFormat::createDateInstance(DateFormat::kFull)), noon, atBeginning);
}

QString Format::today() {
  return QDate::currentDate().toString(Qt::ISODate);
}

QString Format::age(double milliseconds) {
  if (milliseconds == 0) return {};
  // Making one takes many times as long as using it.
  thread_local std::unique_ptr<icu::RelativeDateTimeFormatter> format;
  thread_local icu::Locale formatLocale;
  UErrorCode status = U_ZERO_ERROR;
  if (!format || formatLocale != icu::Locale::getDefault()) {
    formatLocale = icu::Locale::getDefault();
    format = std::make_unique<icu::RelativeDateTimeFormatter>(formatLocale, status);
  }
  return U_SUCCESS(status) ? qtText(ageText(*format, calendarDaysSince(milliseconds))) : QString();
}

QString Format::percent(double fraction) {
  UErrorCode status = U_ZERO_ERROR;
  const auto text = icu::number::NumberFormatter::withLocale(icu::Locale::getDefault())
                        .unit(icu::NoUnit::percent())
                        .scale(icu::number::Scale::powerOfTen(2))
                        .precision(icu::number::Precision::integer())
                        .formatDouble(fraction, status)
                        .toString(status);
  return qtText(text);
}

}  // namespace orvane
