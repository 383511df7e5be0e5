/* Between Foundation's objects and plain values: the one place where a host's objects are read.
 *
 * They may be of any class and say anything. Whatever they raise ends here, and no memory is
 * trusted to be as large as an object says: characters are copied out, items asked for one by one.
 */
#include <stdlib.h>
#include <string.h>

#ifdef __APPLE__
#include <objc/runtime.h>
#endif

#import "objc/Private.h"

/* A dictionary that holds itself, or far too much, has to come to an end. */
enum { deepest = 512, mostItems = 1 << 20 };

typedef struct Bounds {
  int depth;
  long items;
  BOOL noMemory; /* then the whole is nothing: a record with half of its entries would be wrong */
} Bounds;

static BOOL fill(Plain* plain, id object, Bounds* bounds);

static BOOL outOfMemory(Bounds* bounds) {
  bounds->noMemory = YES;
  return NO;
}

/* How many of the first units are certainly no half of a surrogate pair, looked at four at once. */
static size_t wholeUnits(const uint16_t* units, size_t count) {
  const uint64_t highBits = 0x8000800080008000U;
  uint64_t four;
  size_t whole = 0;
  while (whole + 4 <= count) {
    memcpy(&four, units + whole, sizeof four);
    if ((four & highBits) != 0) break;
    whole += 4;
  }
  return whole;
}

/* Whether no half of a surrogate pair stands alone. */
static BOOL isUnicode(const uint16_t* units, size_t count) {
  size_t i;
  for (i = wholeUnits(units, count); i < count; ++i) {
    if ((units[i] & 0xF800) != 0xD800) continue;
    if (units[i] >= 0xDC00 || i + 1 == count || (units[i + 1] & 0xFC00) != 0xDC00) return NO;
    ++i;
  }
  return YES;
}

static BOOL fillText(Plain* plain, NSString* string, Bounds* bounds) {
  const NSUInteger count = [string length];
  if (count > INT32_MAX || count >= SIZE_MAX / sizeof(unichar)) return NO;
  /* Cleared: a string of the host's need not fill as much as it says it is long. */
  plain->as.units = calloc(count + 1, sizeof(unichar));
  if (plain->as.units == NULL) return outOfMemory(bounds);
  plain->kind = plainText;
  plain->count = count;
  [string getCharacters:plain->as.units range:NSMakeRange(0, count)];
  return isUnicode(plain->as.units, count);
}

static BOOL fillNumber(Plain* plain, NSNumber* number) {
  const char* type = [number objCType];
  if ([number isKindOfClass:[[NSNumber numberWithBool:YES] class]]) {
    plain->kind = plainBoolean;
    plain->as.integer = [number boolValue] ? 1 : 0;
  } else if (type != NULL && (*type == 'd' || *type == 'f')) {
    plain->kind = plainReal;
    plain->as.real = [number doubleValue];
  } else if (type != NULL && (*type == 'Q' || *type == 'L')) {
    plain->kind = plainNatural;
    plain->as.natural = [number unsignedLongLongValue];
  } else {
    plain->kind = plainInteger;
    plain->as.integer = [number longLongValue];
  }
  return YES;
}

static BOOL fillDate(Plain* plain, NSDate* date) {
  plain->kind = plainDate;
  plain->as.real = [date timeIntervalSince1970];
  return YES;
}

/* The bytes of data are a pointer and a length that its class gives its word for, so that only the
 * system's own classes are taken at it. */
#ifdef __APPLE__
static BOOL isSystemsOwn(NSData* data) {
  const char* image = class_getImageName([data class]);
  return image != NULL && (strncmp(image, "/System/Library/", strlen("/System/Library/")) == 0 ||
                           strncmp(image, "/usr/lib/", strlen("/usr/lib/")) == 0);
}
#else
static BOOL isSystemsOwn(NSData* data) {
  static const char bytes[64];
  NSData* small = [NSData dataWithBytes:bytes length:1];
  NSData* larger = [NSData dataWithBytes:bytes length:sizeof bytes];
  const Class class = [data class];
  return class == [small class] || class == [larger class] ||
         class == [[[larger mutableCopy] autorelease] class];
}
#endif

static BOOL fillData(Plain* plain, NSData* data, Bounds* bounds) {
  const NSUInteger count = [data length];
  const BOOL inside =
      bounds->depth > 0; /* of a host's dictionary; else the record's own document */
  if (count == SIZE_MAX || !isSystemsOwn(data) || (inside && count > INT32_MAX)) return NO;
  plain->as.bytes = malloc(count + 1);
  if (plain->as.bytes == NULL) return outOfMemory(bounds);
  plain->kind = plainData;
  plain->count = count;
  [data getBytes:plain->as.bytes length:count];
  return YES;
}

static BOOL fillArray(Plain* plain, NSArray* array, Bounds* bounds) {
  const NSUInteger count = [array count];
  NSUInteger i;
  if (count > (NSUInteger)mostItems) return NO;
  plain->as.items = calloc(count + 1, sizeof(Plain));
  if (plain->as.items == NULL) return outOfMemory(bounds);
  plain->kind = plainArray;
  plain->count = count;
  for (i = 0; i < count && bounds->items > 0; ++i) {
    (void)fill(&plain->as.items[i], [array objectAtIndex:i], bounds);
  }
  return bounds->items > 0;
}

/* Room for one more entry: the item of its key, the item of its value after it. */
static Plain* oneMoreEntry(Plain* dictionary, size_t* room) {
  if (dictionary->count + 2 > *room) {
    const size_t more = *room * 2 + 8;
    Plain* items = realloc(dictionary->as.items, more * sizeof(Plain));
    if (items == NULL) return NULL;
    dictionary->as.items = items;
    *room = more;
  }
  Plain* entry = &dictionary->as.items[dictionary->count];
  entry[0] = entry[1] = (Plain){.kind = plainNothing};
  dictionary->count += 2;
  return entry;
}

static void dropLastEntry(Plain* dictionary) {
  dictionary->count -= 2;
  plainFree(&dictionary->as.items[dictionary->count]);
  plainFree(&dictionary->as.items[dictionary->count + 1]);
}

/* The entry's value, bounded by itself where the dictionary is the outermost one: an entry beyond
 * all bounds then takes no other with it. */
static BOOL fillEntry(Plain* entry, id key, id value, Bounds* bounds) {
  if (bounds->depth == 1) bounds->items = mostItems;
  return fill(&entry[0], key, bounds) && entry[0].kind == plainText &&
         fill(&entry[1], value, bounds);
}

static BOOL fillDictionary(Plain* plain, NSDictionary* dictionary, Bounds* bounds) {
  NSEnumerator* keys = [dictionary keyEnumerator];
  size_t room = 0;
  id key;
  if (keys == nil) return outOfMemory(bounds);
  plain->kind = plainDictionary;
  while ((key = [keys nextObject]) != nil) {
    Plain* entry;
    if (plain->count >= 2 * (size_t)mostItems) return NO;
    entry = oneMoreEntry(plain, &room);
    if (entry == NULL) return outOfMemory(bounds);
    if (!fillEntry(entry, key, [dictionary objectForKey:key], bounds)) dropLastEntry(plain);
    if (bounds->items <= 0 && bounds->depth > 1) return NO;
  }
  return YES;
}

static BOOL fillContainer(Plain* plain, id object, Bounds* bounds) {
  BOOL filled = NO;
  if (bounds->depth >= deepest) return NO;
  ++bounds->depth;
  if ([object isKindOfClass:[NSArray class]]) filled = fillArray(plain, object, bounds);
  if ([object isKindOfClass:[NSDictionary class]]) filled = fillDictionary(plain, object, bounds);
  --bounds->depth;
  return filled;
}

static BOOL fillAny(Plain* plain, id object, Bounds* bounds) {
  if ([object isKindOfClass:[NSString class]]) return fillText(plain, object, bounds);
  if ([object isKindOfClass:[NSNumber class]]) return fillNumber(plain, object);
  if ([object isKindOfClass:[NSDate class]]) return fillDate(plain, object);
  if ([object isKindOfClass:[NSData class]]) return fillData(plain, object, bounds);
  return fillContainer(plain, object, bounds);
}

/* What could not be filled is nothing afterwards. */
static BOOL fill(Plain* plain, id object, Bounds* bounds) {
  const int depth = bounds->depth;
  volatile BOOL filled = NO;
  if (--bounds->items < 0) return NO;
  @try {
    filled = fillAny(plain, object, bounds);
  } @catch (NSException* raised) {
    if (saysNoMemory(raised)) bounds->noMemory = YES;
  } @catch (...) {
    filled = NO;
  }
  if (!filled) plainFree(plain);
  bounds->depth = depth;
  return filled;
}

static BOOL isOfClass(id object, Class class, Bounds* bounds) {
  volatile BOOL is = NO;
  @try {
    is = [object isKindOfClass:class];
  } @catch (NSException* raised) {
    if (saysNoMemory(raised)) bounds->noMemory = YES;
  } @catch (...) {
    is = NO;
  }
  return is;
}

static Plain plainFrom(id object, Class class) {
  Plain plain = {.kind = plainNothing};
  Bounds bounds = {0, mostItems, NO};
  if (object == nil) return plain;
  if (isOfClass(object, class, &bounds)) (void)fill(&plain, object, &bounds);
  if (bounds.noMemory) {
    plainFree(&plain);
    plain.kind = plainShortage;
  }
  return plain;
}

/* The enumerators on the way go at once, and not with the host's pool. */
static Plain containerFrom(id object, Class class) {
  Plain plain = {.kind = plainNothing};
  NSAutoreleasePool* pool;
  if (object == nil) return plain;
  pool = newPool();
  if (pool == nil) return (Plain){.kind = plainShortage};
  plain = plainFrom(object, class);
  drainPool(pool);
  return plain;
}

Plain textFrom(id string) {
  return plainFrom(string, [NSString class]);
}

Plain dateFrom(id date) {
  return plainFrom(date, [NSDate class]);
}

Plain arrayFrom(id array) {
  return containerFrom(array, [NSArray class]);
}

Plain dictionaryFrom(id dictionary) {
  return containerFrom(dictionary, [NSDictionary class]);
}

Plain dataFrom(id data) {
  return plainFrom(data, [NSData class]);
}
