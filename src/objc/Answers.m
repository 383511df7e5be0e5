/* From plain values to the Foundation objects that a host is given. */
#include <stdlib.h>

#import "objc/Private.h"

/* A container that is being filled, and which of its items comes next. What a file holds may be
 * nested too deeply for recursion. */
typedef struct Level {
  const Plain* plain;
  id object;
  size_t next;
} Level;

typedef struct Levels {
  Level* all;
  size_t count, room;
} Levels;

static BOOL isContainer(const Plain* plain) {
  return plain->kind == plainArray || plain->kind == plainDictionary;
}

/* A container is still empty. */
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
      return [NSMutableArray arrayWithCapacity:plain->count];
    case plainDictionary:
      return [NSMutableDictionary dictionaryWithCapacity:plain->count / 2];
    default:
      return nil;
  }
}

/* NO if there is no memory. */
static BOOL enter(Levels* levels, const Plain* plain, id object) {
  if (object == nil) return NO;
  if (levels->count == levels->room) {
    const size_t room = levels->room * 2 + 8;
    Level* all = realloc(levels->all, room * sizeof(Level));
    if (all == NULL) return NO;
    levels->all = all;
    levels->room = room;
  }
  levels->all[levels->count++] = (Level){plain, object, 0};
  return YES;
}

/* Puts the next item into the innermost container. If the item is a container, it is filled next.
 */
static BOOL addNext(Levels* levels) {
  Level* level = &levels->all[levels->count - 1];
  const Plain* item = &level->plain->as.items[level->next++];
  id object;
  if (level->plain->kind == plainArray) {
    object = objectFor(item);
    if (object != nil) [level->object addObject:object];
  } else {
    id key = objectFor(item);
    item = &level->plain->as.items[level->next++];
    object = key != nil ? objectFor(item) : nil;
    if (object != nil) [level->object setObject:object forKey:key];
  }
  return object == nil || !isContainer(item) || enter(levels, item, object);
}

/* nil if there is no memory. */
static id filledObjectFor(const Plain* plain, Levels* levels) {
  id object = objectFor(plain);
  if (isContainer(plain) && !enter(levels, plain, object)) return nil;
  while (levels->count > 0) {
    const Level* level = &levels->all[levels->count - 1];
    if (level->next == level->plain->count) {
      --levels->count;
    } else if (!addNext(levels)) {
      return nil;
    }
  }
  return object;
}

/* Foundation raises if it has no memory; the result is then nil. */
static id taking(Plain plain, PlainKind kind) {
  id volatile object = nil;
  Levels levels = {NULL, 0, 0};
  if (plain.kind == kind && isRoomFor(plain.count * sizeof(unichar))) {
    @try {
      object = filledObjectFor(&plain, &levels);
    } @catch (...) {
      object = nil;
    }
  }
  free(levels.all);
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
