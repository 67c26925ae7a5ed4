// The island: a square of 30 x 30 units, the sea's surface 11 units above its lower edge.
#version 3.7;
global_settings { assumed_gamma srgb max_trace_level 30 }
#include "materials.inc"
#include "island_shapes.inc"
#include "island_geometry.inc"

light_source { Sun*900 Sunlight parallel point_at 0 }
light_source { <100, 500, -300> rgb <.31, .37, .37>*Sky shadowless parallel point_at 0 }
light_source { <0, -300, -500> rgb <.17, .175, .14>*Sky shadowless parallel point_at 0 }

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
    color_map { [0 rgb <.85, .81, .70>] [1 rgb <.77, .715, .59>] }
    scale 1.4
}
#declare Soil = pigment {
    bozo
    color_map { [0 rgb <.20, .34, .10>] [1 rgb <.34, .46, .16>] }
    scale .5
}
// Place of a height in the map of the ground's colours.
#declare Level = function(h) { min(.999, max(0, (h + 3)/12)) }
object {
    Ground
    texture {
        pigment {
            function {
                Level(y + .16*(Bumps(x, y, z) - .5)
                      + .10*(Grain(x, y, z) - .5)*max(0, min(1, y + .4)))
            }
            pigment_map {
                [Level(-2.6) rgbt <.121, .60, .71, 1>]
                [Level(-1.3) rgbt <.20, .68, .75, .62>]
                [Level(-.35) rgbt <.42, .80, .80, .25>]
                [Level(-.08) rgbt <.60, .82, .80, .06>]
                [Level(.02) rgb <.70, .84, .80>]
                [Level(.05) rgb <.86, .90, .88>]
                [Level(.08) rgb <.86, .90, .88>]
                [Level(.10) rgb <.54, .49, .38>]
                [Level(.30) rgb <.63, .575, .46>]
                [Level(.40) rgb <.72, .665, .54>]
                [Level(.54) Sand]
                [Level(.78) Sand]
                [Level(.81) rgb <.66, .58, .45>]
                [Level(.84) Sand]
                [Level(1.45) Sand]
                [Level(1.8) Soil]
                [Level(8.9) Soil]
            }
        }
        // Hollows that wind and feet have left, longer along the shore.
        normal {
            average
            normal_map {
                [1 bumps 1.1 scale <.60, .30, .26>]
                [.7 granite .28 scale .5]
            }
        }
        finish { ambient .26*Shade diffuse .80 }
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
// What the tide left.
#declare Dice = seed(12);
#declare Wood = texture {
    pigment { rgb <.60, .54, .46> }
    normal { granite .6 scale <1, .2, .2> }
    finish { ambient Ambient diffuse .8 }
}
#macro OnGround(X, Z) trace(Ground, <X, 30, Z>, -y) #end
#macro Log(X0, Z0, X1, Z1, Thick)
    cone { OnGround(X0, Z0) + y*.04, Thick, OnGround(X1, Z1) + y*.03, Thick*.5 texture { Wood } }
#end
Log(8.2, -3.9, 10.0, -4.2, .10)
Log(9.2, -4.5, 9.7, -4.0, .06)
Log(17.4, -5.5, 18.9, -5.2, .09)
#for (I, 1, 16)
    sphere {
        0, .05 + .06*rand(Dice)
        scale <1.3, .8, 1>
        texture { T_Trunk }
        translate OnGround(6 + 21*rand(Dice), -4.0 - 1.6*rand(Dice)) + y*.03
    }
#end
object { Palms }
object { Jungle }
