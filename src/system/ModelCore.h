// A keyframe model placed in the world.
#pragma once

#include "system/QModel.h"
#include "system/RenderObject.h"

/// Draws a shared QModel with a placement, textures and flags of its own. Without a model it draws
/// nothing and touches no GL state.
class ModelCore : public RenderObject {
public:
    ~ModelCore() override;
    void preRender() override;
    void renderMesh() override;
    void postRender() override;
    /// Frees the mesh of the model, and so that of every object that shares it.
    void cleanup() override;

    void setModel(QModel* newmodel);

    QModel* model = nullptr;  ///< not owned
};
