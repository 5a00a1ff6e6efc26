import QtQuick
import Tallowby.Blocks

SketchBlockContent {}
