#include "platform/apple/Foundation.h"
#include "platform/apple/FoundationText.h"

// Out of date since 10.10, and missing from some headers. It is sent only after asking.
@interface NSDate (WENLOLIBCalendarFormat)
- (NSString*)descriptionWithCalendarFormat:(NSString*)format
                                  timeZone:(NSTimeZone*)zone
                                    locale:(id)locale;
@end

namespace wenlolib::platform::apple::foundation {

Text calendarFormatted(Instant date, std::string_view format) {
  const Pool pool;
  NSDate* moment = [NSDate dateWithTimeIntervalSince1970:date.time_since_epoch().count()];
  const SEL describe = @selector(descriptionWithCalendarFormat:timeZone:locale:);
  if (![moment respondsToSelector:describe]) return std::nullopt;
  NSDictionary* locale = [[NSUserDefaults standardUserDefaults] dictionaryRepresentation];
  return textOf([moment descriptionWithCalendarFormat:stringFrom(format)
                                             timeZone:nil
                                               locale:locale]);
}

}  // namespace wenlolib::platform::apple::foundation
