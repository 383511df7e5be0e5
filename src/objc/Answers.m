/* From plain values to Foundation's objects: what a host is handed. */
#import "objc/Private.h"

static id objectFor(const Plain* plain);

static id arrayFor(const Plain* plain) {
  NSMutableArray* array = [NSMutableArray arrayWithCapacity:plain->count];
  size_t i;
  for (i = 0; i < plain->count; ++i) {
    id item = objectFor(&plain->as.items[i]);
    if (item != nil) [array addObject:item];
  }
  return array;
}

static id dictionaryFor(const Plain* plain) {
  NSMutableDictionary* dictionary = [NSMutableDictionary dictionaryWithCapacity:plain->count / 2];
  size_t i;
  for (i = 0; i + 1 < plain->count; i += 2) {
    id key = objectFor(&plain->as.items[i]);
    id value = objectFor(&plain->as.items[i + 1]);
    if (key != nil && value != nil) [dictionary setObject:value forKey:key];
  }
  return dictionary;
}

static id objectFor(const Plain* plain) {
  switch (plain->kind) {
    case plainBoolean:
      return [NSNumber numberWithBool:plain->as.integer != 0];
    case plainInteger:
      return [NSNumber numberWithLongLong:plain->as.integer];
    case plainNatural:
      return [NSNumber numberWithUnsignedLongLong:plain->as.natural];
    case plainReal:
      return [NSNumber numberWithDouble:plain->as.real];
    case plainDate:
      return [NSDate dateWithTimeIntervalSince1970:plain->as.real];
    case plainText:
      return [NSString stringWithCharacters:plain->as.units length:plain->count];
    case plainData:
      return [NSData dataWithBytes:plain->as.bytes length:plain->count];
    case plainArray:
      return arrayFor(plain);
    case plainDictionary:
      return dictionaryFor(plain);
    default:
      return nil;
  }
}

/* Foundation raises where it has no memory; the answer is then nil. */
static id taking(Plain plain, PlainKind kind) {
  id volatile object = nil;
  if (plain.kind == kind) {
    @try {
      object = objectFor(&plain);
    } @catch (...) {
      object = nil;
    }
  }
  plainFree(&plain);
  return object;
}

NSString* stringTaking(Plain text) {
  return taking(text, plainText);
}

NSDictionary* dictionaryTaking(Plain dictionary) {
  return taking(dictionary, plainDictionary);
}

NSData* dataTaking(Plain data) {
  return taking(data, plainData);
}
