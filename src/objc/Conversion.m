/* From Foundation's objects to plain values: the one place where a host's objects are read.
 *
 * They may be of any class and say anything. Whatever they raise is caught here. No object is
 * trusted about the size of its memory: characters are copied out, and items are asked for one by
 * one.
 */
#include <stdlib.h>
#include <string.h>

#ifdef __APPLE__
#include <objc/runtime.h>
#endif

#import "objc/Private.h"

/* Reading a dictionary that holds itself, or far too much, must end. */
enum { deepest = 512, mostItems = 1 << 20 };

/* A container that is being read. What a host passes may be nested too deeply for recursion. */
typedef struct Level {
  Plain* plain;
  id object;
  NSEnumerator* keys; /* of a dictionary */
  size_t room;        /* in its plain value */
  NSUInteger next;    /* of an array's items */
} Level;

/* One reading of a host's object: the containers that are open, the innermost last. */
typedef struct Reading {
  Class class; /* that the outermost object must be of */
  Level* levels;
  size_t depth, room;
  long items;    /* how many more objects may be read */
  BOOL mends;    /* half of a surrogate pair that stands alone becomes "_" */
  BOOL noMemory; /* then nothing is read: a record with half of its entries would be wrong */
} Reading;

static BOOL outOfMemory(Reading* reading) {
  reading->noMemory = YES;
  return NO;
}

static BOOL succeeds(ReadingStep step, Reading* reading, Plain* plain, id object) {
  return succeedsGuarded(step, reading, plain, object, &reading->noMemory);
}

/* How many of the first units are certainly not half of a surrogate pair; checked four at a time.
 */
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

/* The place from `i` on of half a surrogate pair that stands alone; `count` if there is none. */
static size_t loneHalf(const uint16_t* units, size_t i, size_t count) {
  for (; i < count; ++i) {
    if ((units[i] & 0xF800) != 0xD800) continue;
    if (units[i] >= 0xDC00 || i + 1 == count || (units[i + 1] & 0xFC00) != 0xDC00) return i;
    ++i;
  }
  return count;
}

/* Whether the text is Unicode, after mending if that is wanted. */
static BOOL isUnicode(uint16_t* units, size_t count, BOOL mends) {
  size_t i = loneHalf(units, wholeUnits(units, count), count);
  while (mends && i < count) {
    units[i] = '_';
    i = loneHalf(units, i, count);
  }
  return i == count;
}

static BOOL fillText(Reading* reading, Plain* plain, NSString* string) {
  const NSUInteger count = [string length];
  if (count > INT32_MAX || count >= SIZE_MAX / sizeof(unichar)) return NO;
  /* Cleared, because a host's string need not fill the length that it reports. */
  plain->as.units = calloc(count + 1, sizeof(unichar));
  if (plain->as.units == NULL) return outOfMemory(reading);
  plain->kind = plainText;
  plain->count = count;
  [string getCharacters:plain->as.units range:NSMakeRange(0, count)];
  return isUnicode(plain->as.units, count, reading->mends);
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

/* A data object's bytes are a pointer and a length that only its class vouches for. Only the
 * system's own classes are trusted with that. */
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

static BOOL fillData(Reading* reading, Plain* plain, NSData* data) {
  const NSUInteger count = [data length];
  const BOOL inside = reading->depth > 0; /* of a container; else the record's own document */
  if (count == SIZE_MAX || !isSystemsOwn(data) || (inside && count > INT32_MAX)) return NO;
  plain->as.bytes = malloc(count + 1);
  if (plain->as.bytes == NULL) return outOfMemory(reading);
  plain->kind = plainData;
  plain->count = count;
  [data getBytes:plain->as.bytes length:count];
  return YES;
}

static BOOL open(Reading* reading, Level level) {
  if (reading->depth >= deepest) return NO;
  if (reading->depth == reading->room) {
    const size_t room = reading->room * 2 + 4;
    Level* levels = realloc(reading->levels, room * sizeof(Level));
    if (levels == NULL) return outOfMemory(reading);
    reading->levels = levels;
    reading->room = room;
  }
  reading->levels[reading->depth++] = level;
  return YES;
}

static BOOL openArray(Reading* reading, Plain* plain, NSArray* array) {
  const NSUInteger count = [array count];
  if (count > (NSUInteger)mostItems) return NO;
  plain->as.items = calloc(count + 1, sizeof(Plain));
  if (plain->as.items == NULL) return outOfMemory(reading);
  plain->kind = plainArray;
  plain->count = count;
  return open(reading, (Level){.plain = plain, .object = array});
}

static BOOL openDictionary(Reading* reading, Plain* plain, NSDictionary* dictionary) {
  NSEnumerator* keys = [dictionary keyEnumerator];
  if (keys == nil) return outOfMemory(reading);
  plain->kind = plainDictionary;
  return open(reading, (Level){.plain = plain, .object = dictionary, .keys = keys});
}

static BOOL fillAny(Reading* reading, Plain* plain, id object) {
  if ([object isKindOfClass:[NSString class]]) return fillText(reading, plain, object);
  if ([object isKindOfClass:[NSNumber class]]) return fillNumber(plain, object);
  if ([object isKindOfClass:[NSDate class]]) return fillDate(plain, object);
  if ([object isKindOfClass:[NSData class]]) return fillData(reading, plain, object);
  if ([object isKindOfClass:[NSArray class]]) return openArray(reading, plain, object);
  if ([object isKindOfClass:[NSDictionary class]]) return openDictionary(reading, plain, object);
  return NO;
}

/* A container is only opened here, and filled later. What cannot be read becomes nothing. */
static void begin(Reading* reading, Plain* plain, id object) {
  if (--reading->items < 0) return;
  if (!succeeds(fillAny, reading, plain, object)) plainFree(plain);
}

static BOOL addItem(Reading* reading, Plain* plain, id array) {
  Level* level = &reading->levels[reading->depth - 1];
  const NSUInteger i = level->next;
  if (reading->items <= 0) return NO;
  if (i == plain->count) {
    --reading->depth;
  } else {
    ++level->next;
    begin(reading, &plain->as.items[i], [array objectAtIndex:i]);
  }
  return YES;
}

/* Room for one more entry: an item for its key, followed by one for its value. */
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

/* Drops the last entry if its key is not a text or its value could not be read. */
static void dropLastEntryWithoutValue(Plain* dictionary) {
  Plain* entry;
  if (dictionary->count == 0) return;
  entry = &dictionary->as.items[dictionary->count - 2];
  if (entry[1].kind != plainNothing) return;
  plainFree(&entry[0]);
  dictionary->count -= 2;
}

/* Each entry of the outermost dictionary has bounds of its own: an entry that exceeds them does not
 * take the others with it. */
static BOOL addEntry(Reading* reading, Plain* plain, id dictionary) {
  const size_t depth = reading->depth;
  Level* level = &reading->levels[depth - 1];
  id key = nil, value;
  Plain* entry;
  dropLastEntryWithoutValue(plain);
  if (depth == 1) reading->items = mostItems;
  if (reading->items <= 0 || plain->count >= 2 * (size_t)mostItems) return NO;
  key = [level->keys nextObject];
  if (key == nil) return --reading->depth, YES;
  value = [dictionary objectForKey:key];
  entry = oneMoreEntry(plain, &level->room);
  if (entry == NULL) return outOfMemory(reading);
  begin(reading, &entry[0], key);
  reading->depth = depth; /* a container is not a key */
  if (entry[0].kind == plainText) begin(reading, &entry[1], value);
  return YES;
}

static void fill(Reading* reading, Plain* plain, id object) {
  begin(reading, plain, object);
  while (reading->depth > 0 && !reading->noMemory) {
    const Level level = reading->levels[reading->depth - 1];
    const ReadingStep add = level.plain->kind == plainArray ? addItem : addEntry;
    const size_t depth = reading->depth;
    if (succeeds(add, reading, level.plain, level.object)) continue;
    plainFree(level.plain);
    reading->depth = depth - 1;
  }
}

static BOOL isOfClass(Reading* reading, Plain* plain, id object) {
  (void)plain;
  return [object isKindOfClass:reading->class];
}

static Plain plainRead(id object, Class class, BOOL mends) {
  Plain plain = {.kind = plainNothing};
  Reading reading = {.class = class, .items = mostItems, .mends = mends};
  if (object == nil) return plain;
  if (succeeds(isOfClass, &reading, &plain, object)) fill(&reading, &plain, object);
  free(reading.levels);
  if (reading.noMemory) {
    plainFree(&plain);
    plain.kind = plainShortage;
  }
  return plain;
}

static Plain plainFrom(id object, Class class) {
  return plainRead(object, class, NO);
}

/* The enumerators used on the way are released at once, not with the host's pool. */
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

Plain mendedTextFrom(id string) {
  return plainRead(string, [NSString class], YES);
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
