/* The Clock's App View: a plug-in in C, without a settings page. It draws a dial, and what time it is. */
#include <lumora/AppView.h>

#include <math.h>
#include <stdio.h>

static const double kTurn = 6.283185307179586;

static const char* identifier(void) {
    return "org.lumora.plugins.clock";
}

static const char* name(void) {
    return "Clock";
}

static const char* app_id(void) {
    return "org.lumora.samples.Clock";
}

typedef struct Dial {
    double x; /* of the middle */
    double y;
    double radius;
} Dial;

/* A line from one distance of the middle to another, in radii; turns are counted from the top. */
static void draw_hand(const LumoraCanvas* canvas, Dial dial, double turns, double from, double to, double thickness) {
    const double x = dial.radius * sin(turns * kTurn);
    const double y = -dial.radius * cos(turns * kTurn);
    canvas->line(canvas, dial.x + from * x, dial.y + from * y, dial.x + to * x, dial.y + to * y, thickness);
}

static void draw_dial(const LumoraCanvas* canvas, const LumoraDrawing* drawing, Dial dial) {
    canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_TEXT, 0.08));
    canvas->arc(canvas, dial.x, dial.y, dial.radius, 0, 360, 0);
    canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_SEPARATOR, 1));
    canvas->arc(canvas, dial.x, dial.y, dial.radius, 0, 360, 2);
    for (int i = 0; i < 60; ++i) {
        const int hour = i % 5 == 0;
        canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_TEXT, hour ? 1 : 0.4));
        draw_hand(canvas, dial, i / 60.0, hour ? 0.84 : 0.9, 0.93, hour ? 2.4 : 1);
    }
    const double minutes = drawing->minute + drawing->second / 60.0;
    canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_TEXT, 1));
    draw_hand(canvas, dial, (drawing->hour % 12 + minutes / 60) / 12, 0, 0.5, dial.radius * 0.06);
    draw_hand(canvas, dial, minutes / 60, 0, 0.76, dial.radius * 0.04);
    canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_ACCENT, 1));
    canvas->arc(canvas, dial.x, dial.y, dial.radius * 0.06, 0, 360, 0);
}

static double draw(const LumoraCanvas* canvas, const LumoraDrawing* drawing) {
    static const char* const kDays[] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
    static const char* const kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                          "July",    "August",   "September", "October", "November", "December"};
    const double scale = drawing->textScale;
    /* The dial stands at the left, or fills a view that has no room beside it. */
    const double room = drawing->width * 0.55;
    const double edge = drawing->height < room ? drawing->height : room;
    const Dial dial = {edge / 2, drawing->height / 2, edge / 2 - 2};
    draw_dial(canvas, drawing, dial);

    char digits[16];
    char date[32];
    (void)snprintf(digits, sizeof digits, "%02d:%02d", drawing->hour % 24, drawing->minute % 60);
    /* Of a month only three letters where texts are large. */
    (void)snprintf(date, sizeof date, "%d %.*s", drawing->day, scale > 1.4 ? 3 : 9,
                   kMonths[(drawing->month + 11) % 12]);
    const double left = edge + 18;
    const double width = drawing->width - left;
    double large = 44 * scale;
    if (large > width / 2.7) large = width / 2.7;
    LumoraText text = {digits, left, 0, width, large, 300, LUMORA_ALIGN_LEFT, 1};
    text.y = dial.y - 0.61 * large - 20 * scale;
    canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_TEXT, 1));
    text.y += canvas->text(canvas, &text).height + 2;
    text.text = kDays[(drawing->weekday % 7 + 7) % 7];
    text.size = 16 * scale;
    text.weight = 600;
    text.y += canvas->text(canvas, &text).height;
    canvas->fillColor(canvas, lumora_role(LUMORA_ROLE_SECONDARY, 1));
    text.text = date;
    text.size = 14 * scale;
    text.weight = 400;
    text.lines = 2;
    (void)canvas->text(canvas, &text);
    return 60 - drawing->second; /* at the next full minute */
}

static const LumoraAppView* shared_instance(void) {
    static const LumoraAppView clock_view = {LUMORA_APP_VIEW_VERSION, identifier, name, app_id, NULL, 0, draw};
    return &clock_view;
}

LUMORA_PRINCIPAL_CLASS(ClockView, shared_instance)
