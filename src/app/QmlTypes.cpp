#include "app/QmlTypes.h"

void qml_register_types_Tallowby_Platform();
void qml_register_types_Tallowby_Model();
void qml_register_types_Tallowby_Canvas();
void qml_register_types_Tallowby_Blocks();
void qml_register_types_Tallowby_Feedback();
void qml_register_types_Tallowby_Guidance();
void qml_register_types_Tallowby_Search();
void qml_register_types_Tallowby_Flip();
void qml_register_types_Tallowby_App();

namespace tallowby {

void registerQmlTypes() {
    qml_register_types_Tallowby_Platform();
    qml_register_types_Tallowby_Model();
    qml_register_types_Tallowby_Canvas();
    qml_register_types_Tallowby_Blocks();
    qml_register_types_Tallowby_Feedback();
    qml_register_types_Tallowby_Guidance();
    qml_register_types_Tallowby_Search();
    qml_register_types_Tallowby_Flip();
    qml_register_types_Tallowby_App();
}

} // namespace tallowby
