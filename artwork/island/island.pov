// The island: a square of 30 x 30 units, the sea's surface 11 units above its lower edge.
#version 3.7;
global_settings { assumed_gamma srgb max_trace_level 30 }
#include "materials.inc"
#include "shapes.inc"
#include "island_geometry.inc"

light_source { Sun*900 Sunlight parallel point_at 0 }
light_source { <100, 500, -300> rgb <.25, .31, .33> shadowless parallel point_at 0 }
light_source { <0, -300, -500> rgb <.13, .135, .11> shadowless parallel point_at 0 }

// The eye stands a little above the sea, so that the beach has some depth.
camera {
    orthographic
    location <15, 4, -4> - vrotate(z*60, x*3)
    right 30*x
    up 30*y
    direction z
    look_at <15, 4, -4>
}

#declare Bumps = function { pattern { bumps scale .55 } }
#declare Grain = function { pattern { granite scale .9 } }
#declare Sand = pigment {
    granite
    color_map { [0 rgb <.95, .905, .79>] [1 rgb <.87, .80, .66>] }
    scale 1.4
}
#declare Soil = pigment {
    bozo
    color_map { [0 rgb <.20, .30, .10>] [1 rgb <.38, .42, .17>] }
    scale .5
}
// Place of a height in the map of the ground's colours.
#declare Level = function(h) { min(.999, max(0, (h + 3)/12)) }
object {
    Ground
    texture {
        pigment {
            function {
                Level(y + .10*(Bumps(x, y, z) - .5)
                      + .10*(Grain(x, y, z) - .5)*max(0, min(1, y + .4)))
            }
            pigment_map {
                [Level(-2.6) rgbt <.121, .60, .71, 1>]
                [Level(-1.3) rgbt <.20, .68, .75, .62>]
                [Level(-.35) rgbt <.42, .80, .80, .25>]
                [Level(-.06) rgbt <.66, .90, .86, .06>]
                [Level(-.035) rgb <.97, .99, .98>]
                [Level(.03) rgb <.97, .99, .98>]
                [Level(.045) rgb <.76, .70, .55>]
                [Level(.16) rgb <.84, .78, .63>]
                [Level(.34) Sand]
                [Level(1.45) Sand]
                [Level(1.8) Soil]
                [Level(8.9) Soil]
            }
        }
        finish { ambient .26 diffuse .80 }
    }
}
object {
    Stones
    texture {
        pigment {
            granite
            color_map {
                [0 rgb <.30, .27, .24>]
                [.5 rgb <.56, .52, .46>]
                [1 rgb <.70, .66, .58>]
            }
            scale .8
        }
        normal { granite .5 scale .5 }
        finish { ambient Ambient diffuse .85 }
    }
}
object { Palms }
object { Jungle }
