// GNUstep's keyed archiver, for the tests to exchange archives with. Each line of standard input is answered by one:
//
//     gnustep_peer read             archive in hexadecimal -> its value
//     gnustep_peer again            archive -> the same value archived anew
//     gnustep_peer write            value -> archive
//     gnustep_peer write mutable    the same, of mutable objects
//     gnustep_peer sample           a name below -> archive of an object that no form describes
//
// Values are written as tests/interop/Form.h says. A line that starts with "!" says why there is no answer.

#import <Foundation/Foundation.h>

#include <stdio.h>
#include <string.h>

static NSMutableData* bytesOf(NSString* hex) {
    NSMutableData* bytes = [NSMutableData dataWithLength:[hex length] / 2];
    unsigned char* into = [bytes mutableBytes];
    const char* digits = [hex UTF8String];
    for (NSUInteger i = 0; i < [bytes length]; ++i) {
        unsigned byte = 0;
        sscanf(digits + 2 * i, "%2x", &byte);
        into[i] = (unsigned char)byte;
    }
    return bytes;
}

static NSString* hexOf(NSData* bytes) {
    static const char digits[] = "0123456789abcdef";
    const unsigned char* from = [bytes bytes];
    NSMutableData* hex = [NSMutableData dataWithLength:2 * [bytes length]];
    char* into = [hex mutableBytes];
    for (NSUInteger i = 0; i < [bytes length]; ++i) {
        *into++ = digits[from[i] >> 4];
        *into++ = digits[from[i] & 15];
    }
    return [[[NSString alloc] initWithData:hex encoding:NSASCIIStringEncoding] autorelease];
}

/// Well-formed UTF-8 as a text, by way of UTF-16 in a given order of bytes: all other ways to make one, a mutable copy
/// too, leave out a mark of byte order in front.
static NSString* textOf(NSData* utf8, BOOL isMutable) {
    const unsigned char* from = [utf8 bytes];
    const unsigned char* end = from + [utf8 length];
    NSMutableData* utf16 = [NSMutableData data];
    while (from != end) {
        unsigned character = *from++;
        const int more = character < 0xC0 ? 0 : character < 0xE0 ? 1 : character < 0xF0 ? 2 : 3;
        if (more > 0) character &= 0x3FU >> more;
        for (int i = 0; i < more; ++i)
            character = character << 6 | (*from++ & 0x3FU);
        unsigned high = 0xD800 + ((character - 0x10000) >> 10);
        if (character > 0xFFFF) {
            [utf16 appendBytes:(unsigned char[]){high >> 8, high & 0xFF} length:2];
            character = 0xDC00 + (character & 0x3FF);
        }
        [utf16 appendBytes:(unsigned char[]){character >> 8, character & 0xFF} length:2];
    }
    Class made = isMutable ? [NSMutableString class] : [NSString class];
    return [[[made alloc] initWithData:utf16 encoding:NSUTF16BigEndianStringEncoding] autorelease];
}

static double realOf(NSString* bits) {
    unsigned long long number = 0;
    double real = 0;
    sscanf([bits UTF8String], "%llx", &number);
    memcpy(&real, &number, sizeof real);
    return real;
}

static NSString* bitsOf(double real) {
    unsigned long long number = 0;
    memcpy(&number, &real, sizeof number);
    return [NSString stringWithFormat:@"%016llx", number];
}

/// Makes objects of a value's tokens; mutable ones if asked to, else equal texts and numbers are one object.
@interface FormReader : NSObject {
    NSEnumerator* tokens;
    NSMutableDictionary* known;
    BOOL mutable_;
}
- (id)initWithForm:(NSString*)form mutable:(BOOL)isMutable;
- (id)next;
@end

@implementation FormReader

- (id)initWithForm:(NSString*)form mutable:(BOOL)isMutable {
    if ((self = [super init]) != nil) {
        tokens = [[[form componentsSeparatedByString:@" "] objectEnumerator] retain];
        known = [NSMutableDictionary new];
        mutable_ = isMutable;
    }
    return self;
}

- (void)dealloc {
    [tokens release];
    [known release];
    [super dealloc];
}

- (id)leaf:(NSString*)token {
    NSString* rest = [token substringFromIndex:1];
    switch ([token characterAtIndex:0]) {
    case 't':
        return [NSNumber numberWithBool:YES];
    case 'f':
        return [NSNumber numberWithBool:NO];
    case 'i':
        if ([rest characterAtIndex:0] != '-' && strtoull([rest UTF8String], NULL, 10) >> 63 != 0)
            return [NSNumber numberWithUnsignedLongLong:strtoull([rest UTF8String], NULL, 10)];
        return [NSNumber numberWithLongLong:strtoll([rest UTF8String], NULL, 10)];
    case 'r':
        return [NSNumber numberWithDouble:realOf(rest)];
    case 's':
        return textOf(bytesOf(rest), mutable_);
    case 'd':
        return mutable_ ? bytesOf(rest) : [NSData dataWithData:bytesOf(rest)];
    case 'w':
        return [NSDate dateWithTimeIntervalSinceReferenceDate:realOf(rest)];
    case 'n':
        return [NSNull null];
    default:
        return nil;
    }
}

/// The next value; nil is a closing bracket.
- (id)next {
    NSString* token = [tokens nextObject];
    switch ([token characterAtIndex:0]) {
    case '[': {
        NSMutableArray* list = [NSMutableArray array];
        for (id entry = [self next]; entry != nil; entry = [self next])
            [list addObject:entry];
        return mutable_ ? list : [NSArray arrayWithArray:list];
    }
    case '{': {
        NSMutableDictionary* dictionary = [NSMutableDictionary dictionary];
        for (id key = [self next]; key != nil; key = [self next])
            [dictionary setObject:[self next] forKey:key];
        return mutable_ ? dictionary : [NSDictionary dictionaryWithDictionary:dictionary];
    }
    default: {
        id object = mutable_ ? nil : [known objectForKey:token];
        if (object != nil) return object;
        object = [self leaf:token];
        if (object != nil) [known setObject:object forKey:token];
        return object;
    }
    }
}

@end

static NSString* formOfNumber(NSNumber* number) {
    if ([number isKindOfClass:[[NSNumber numberWithBool:YES] class]]) return [number boolValue] ? @"t" : @"f";
    if (strchr("fd", *[number objCType]) != NULL) return [@"r" stringByAppendingString:bitsOf([number doubleValue])];
    if (*[number objCType] == 'Q' && [number unsignedLongLongValue] >> 63 != 0)
        return [NSString stringWithFormat:@"i%llu", [number unsignedLongLongValue]];
    return [NSString stringWithFormat:@"i%lld", [number longLongValue]];
}

static NSString* formOf(id object) {
    if (object == nil || [object isKindOfClass:[NSNull class]]) return @"n";
    if ([object isKindOfClass:[NSNumber class]]) return formOfNumber(object);
    if ([object isKindOfClass:[NSString class]])
        return [@"s" stringByAppendingString:hexOf([object dataUsingEncoding:NSUTF8StringEncoding])];
    if ([object isKindOfClass:[NSData class]]) return [@"d" stringByAppendingString:hexOf(object)];
    if ([object isKindOfClass:[NSDate class]])
        return [@"w" stringByAppendingString:bitsOf([object timeIntervalSinceReferenceDate])];
    NSMutableString* inside = [NSMutableString string];
    if ([object isKindOfClass:[NSArray class]]) {
        for (id entry in object)
            [inside appendFormat:@" %@", formOf(entry)];
        return [NSString stringWithFormat:@"[%@ ]", inside];
    }
    if ([object isKindOfClass:[NSDictionary class]]) {
        for (id key in object)
            [inside appendFormat:@" %@ %@", formOf(key), formOf([object objectForKey:key])];
        return [NSString stringWithFormat:@"{%@ }", inside];
    }
    return [NSString stringWithFormat:@"?%@", [object class]];
}

static NSString* archiveOf(id object) {
    NSMutableData* bytes = [NSMutableData data];
    NSKeyedArchiver* archiver = [[[NSKeyedArchiver alloc] initForWritingWithMutableData:bytes] autorelease];
    [archiver setOutputFormat:NSPropertyListBinaryFormat_v1_0];
    [archiver encodeObject:object forKey:@"root"];
    [archiver finishEncoding];
    return hexOf(bytes);
}

/// A text of a class that is known here only.
@interface Caption : NSString {
    NSString* text;
}
- (id)initWithText:(NSString*)text;
@end

@implementation Caption

- (id)initWithText:(NSString*)newText {
    if ((self = [super init]) != nil) text = [newText retain];
    return self;
}

- (void)dealloc {
    [text release];
    [super dealloc];
}

- (NSUInteger)length {
    return [text length];
}

- (unichar)characterAtIndex:(NSUInteger)index {
    return [text characterAtIndex:index];
}

@end

static id sampleNamed(NSString* name) {
    NSArray* shared = [NSArray arrayWithObjects:@"one", [NSNumber numberWithInt:2], nil];
    NSDictionary* samples = [NSDictionary
        dictionaryWithObjectsAndKeys:[NSNumber numberWithChar:-5], @"char", [NSNumber numberWithUnsignedChar:200],
                                     @"unsigned char", [NSNumber numberWithShort:-300], @"short",
                                     [NSNumber numberWithUnsignedInt:4294967295U], @"unsigned int",
                                     [NSNumber numberWithFloat:0.1F], @"float",
                                     [NSDecimalNumber decimalNumberWithString:@"1.5"], @"decimal",
                                     [[[Caption alloc] initWithText:@"Caption"] autorelease], @"text subclass",
                                     [NSArray arrayWithObjects:shared, shared, [NSArray arrayWithArray:shared], nil],
                                     @"shared list", [NSSet setWithObject:@"one"], @"set",
                                     [NSURL URLWithString:@"http://example.org/"], @"address", nil];
    return [samples objectForKey:name];
}

static NSString* answer(NSString* line, const char* mode, BOOL isMutable) {
    if (strcmp(mode, "write") == 0)
        return archiveOf([[[[FormReader alloc] initWithForm:line mutable:isMutable] autorelease] next]);
    if (strcmp(mode, "sample") == 0) return archiveOf(sampleNamed(line));
    id object = [NSKeyedUnarchiver unarchiveObjectWithData:bytesOf(line)];
    return strcmp(mode, "again") == 0 ? archiveOf(object) : formOf(object);
}

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    const BOOL isMutable = argc > 2 && strcmp(argv[2], "mutable") == 0;
    char* line = NULL;
    size_t capacity = 0;
    for (ssize_t length = getline(&line, &capacity, stdin); length > 0; length = getline(&line, &capacity, stdin)) {
        NSAutoreleasePool* pool = [NSAutoreleasePool new];
        line[strcspn(line, "\n")] = '\0';
        NSString* result = nil;
        @try {
            result = answer([NSString stringWithUTF8String:line], argv[1], isMutable);
        } @catch (NSException* exception) {
            result = [NSString stringWithFormat:@"! %@: %@", [exception name], [exception reason]];
        }
        puts([[result stringByReplacingOccurrencesOfString:@"\n" withString:@" "] UTF8String]);
        fflush(stdout);
        [pool drain];
    }
    free(line);
    return 0;
}
