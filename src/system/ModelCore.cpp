#include "system/ModelCore.h"

ModelCore::~ModelCore() = default;

void ModelCore::setModel(QModel* newmodel) { model = newmodel; }

void ModelCore::preRender() {
    if (!model)
        return;
    model->preRender();
    RenderObject::preRender();
}

void ModelCore::renderMesh() {
    if (model)
        model->renderMesh(this);
}

void ModelCore::postRender() {
    if (!model)
        return;
    model->postRender();
    RenderObject::postRender();
}

void ModelCore::cleanup() {
    if (model)
        model->cleanup();
}
