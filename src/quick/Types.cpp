#include "quick/Types.h"

#include <QtQml>

#include "quick/Reef.h"
#include "quick/ReefTexts.h"
#include "quick/Surroundings.h"

void registerReefTypes(const char* uri) {
    qmlRegisterType<Reef>(uri, 1, 0, "Reef");
    qmlRegisterType<ReefTexts>(uri, 1, 0, "ReefTexts");
    qmlRegisterType<Surroundings>(uri, 1, 0, "Surroundings");
}
