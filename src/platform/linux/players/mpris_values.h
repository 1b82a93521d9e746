#pragma once

#include <QString>
#include <QVariantMap>

#include "platform/players.h"

namespace Corvetape {

/// What is kept of each text that a player says.
inline constexpr qsizetype MostPlayerTextBytes = 4096;

/// True for bus names that stand for a player of their own.
bool IsPlayerName(const QString& busName);

/// The map inside a value of the bus; an empty one if there is none.
QVariantMap BusMap(const QVariant& value);

/// `report` after its player has said `properties`, of which some may be missing: those stay as they are.
/// Values of the wrong type count as empty. Texts are cut to MostPlayerTextBytes between two characters; an
/// address that long is left out, as its beginning would be the address of something else.
PlayerReport WithProperties(PlayerReport report, const QVariantMap& properties);

}  // namespace Corvetape
