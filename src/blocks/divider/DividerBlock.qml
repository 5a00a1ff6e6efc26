import Tallowby.Blocks

DividerBlockContent {}
