English sample resource .urs
