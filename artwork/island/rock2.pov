// A limestone stack far out: a picture of 10 x 12 units, the sea's surface 2 above its lower edge.
#version 3.7;
global_settings { assumed_gamma srgb max_trace_level 20 }
#include "materials.inc"
#include "island_shapes.inc"

light_source { Sun*900 Sunlight*.93 parallel point_at 0 }
light_source { <100, 500, -300> rgb <.15, .19, .235>*Sky shadowless parallel point_at 0 }

camera { orthographic location <0, 4, -60> right 10*x up 12*y direction z }

#declare Limestone = pigment {
    granite
    color_map { [0 rgb <.46, .42, .37>] [.45 rgb <.76, .72, .64>] [1 rgb <.94, .91, .84>] }
    scale <2, 1, 2>
}
union {
    object { Stack0 translate <-.3, 0, 0> }
    object { Stack1 translate <1.75, 0, .5> }
    object { Stack2 translate <-2.35, 0, -.3> }
    texture {
        pigment {
            gradient y
            pigment_map {
                [0 rgb <.26, .24, .20>]
                [.175 rgb <.34, .31, .26>]
                [.21 Limestone]
                [1 Limestone]
            }
            scale 12
            translate -2*y
        }
        normal { granite .4 scale .9 }
        finish { ambient .26*Shade diffuse .85 }
    }
}

#declare Dice = seed(4);
#macro Scrub(Count, Shape, Leaves, Middle, Reach, Small, Spread, Rise, Fall)
    #for (I, 1, Count)
        #local Turn = rand(Dice)*2*pi;
        #local Out = sqrt(rand(Dice))*Reach;
        #local Size = Small + Spread*rand(Dice);
        object {
            Shape
            texture { Leaves }
            scale Size
            translate Middle + <Out*cos(Turn), Rise*rand(Dice) - Fall*Out*Out, Out*sin(Turn)*.8>
        }
    #end
#end
Scrub(70, Clump0, T_Leaf1, <-.3, 6.4, 0>, 1.25, .28, .38, .35, .12)
Scrub(22, Clump1, T_Leaf3, <1.75, 3.35, .5>, .75, .2, .25, .25, 0)
#for (I, 0, 5)
    #local Top = <-1.1 + I*.36, 7.7 + .5*sin(I*2.2), 0>;
    #for (J, 0, 13)
        object {
            Frond1
            texture { T_Frond1 }
            scale 1.0 + .2*rand(Dice)
            rotate z*(22 - J*4)
            rotate y*(J*137.5)
            translate Top
        }
    #end
    cylinder { <Top.x*.7 - .1, 6.2, 0>, Top, .06 texture { T_Trunk } }
#end
