/* What the test cases share: the classes as they were loaded, a home to record to, and checks. */
#ifndef WENLOLIB_TESTS_OBJC_HOST_H
#define WENLOLIB_TESTS_OBJC_HOST_H

#import <Foundation/Foundation.h>

#import "wenlolib/objc/CommonTooWenlolib.h"
#import "wenlolib/objc/WENLOLIB.h"

/* The bundle is loaded at run time, so there are no classes to link with, only these. */
extern Class recordClass;
extern Class toolkitClass;
extern NSBundle* bundle;

typedef struct Case {
  const char* name;
  void (*run)(void);
} Case;

extern const Case interfaceCases[], recordCases[], entryPointCases[], toolkitCases[],
    timeZoneCases[], conversionCases[], hostileCases[], lifetimeCases[], subclassCases[],
    shortageCases[], stackCases[];

/* A failed check is printed, and fails its case. The case goes on. */
#define CHECK(condition) checked((condition) ? YES : NO, #condition, __FILE__, __LINE__)
#define CHECK_EQUAL(found, expected) checkedEqual(found, expected, #found, __FILE__, __LINE__)
#define CHECK_RAISES_NOTHING(statement)                      \
  do {                                                       \
    @try {                                                   \
      statement;                                             \
    } @catch (...) {                                         \
      checked(NO, #statement " raised", __FILE__, __LINE__); \
    }                                                        \
  } while (0)
void checked(BOOL holds, const char* what, const char* file, int line);
void checkedEqual(id found, id expected, const char* what, const char* file, int line);

/* A new home, with the folders and preferences of a host that was installed 100 days ago. Its user
 * agreed and chose fr_FR_EURO. Every case begins with a new home. */
void useNewHome(void);
NSString* inSupportFolder(NSString* name); /* "ALM", "PLM/App_1.PLM", ... */
void writePropertyList(NSDictionary* dictionary, NSString* path);
void writePreferences(NSDictionary* preferences);
NSMutableDictionary* agreedPreferences(double daysAgo);

/* A file's text, nil if there is no such file; the names in a folder, sorted. */
NSString* textAt(NSString* path);
NSArray* namesIn(NSString* folder);

/* The text between the tags of an element of this name; nil if there is no such element. */
NSString* elementIn(NSString* document, NSString* name);

/* This month's file of application usage. */
NSString* monthFile(NSString* application);

NSString* repeated(NSString* text, int times);

#endif
